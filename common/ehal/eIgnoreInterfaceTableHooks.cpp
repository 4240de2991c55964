#include "eIgnoreInterfaceTableHooks.h"

// Out of line, so that the table of virtual operations and the empty hooks are emitted here only.
EIgnoreInterfaceTableHooks::~EIgnoreInterfaceTableHooks() = default;
