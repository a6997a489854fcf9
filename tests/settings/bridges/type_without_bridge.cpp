// Does not compile, and is to say why.
#include "settings/key.h"

struct Shape {
  int corners = 0;
};

const tarnix::Defaults::Key<std::vector<Shape>> shapes("shapes", {});
