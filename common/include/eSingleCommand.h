// ESingleCommand: one command of a command list, an action on a component. This header holds the
// action type; its values belong to the servers that execute the commands.
#pragma once

class ESingleCommand {
 public:
  // What to do with the target component (signed 32-bit; values defined by the servers).
  enum eAction : int {};
};
