#include "eInterfaceTableHooks.h"

// Out of line, so that the table of virtual operations is emitted here only.
EInterfaceTableHooks::~EInterfaceTableHooks() = default;
