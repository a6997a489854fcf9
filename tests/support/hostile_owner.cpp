// A program that owns the clipboard and, as told, serves it well or badly. Other programs' readers of the
// clipboard are tested against it.

#include <string>
#include <vector>

#include "support/owner_client.h"
#include "support/owner_script.h"
#include "support/scripted_owner.h"

int main(int argumentCount, char** arguments) {
  using namespace tarnix::test;
  OwnerScript script = parseOwnerScript(std::vector<std::string>(arguments + 1, arguments + argumentCount));
  OwnerClient client;
  ScriptedOwner(client, std::move(script)).run();
}
