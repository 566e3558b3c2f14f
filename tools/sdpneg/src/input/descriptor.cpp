#include "input/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace tool {

Descriptor::Descriptor(const Input& input)
    : owned_(!input.standardInput),
      number_(owned_ ? ::open(input.name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY) : STDIN_FILENO) {}

Descriptor::~Descriptor() {
  if (owned_ && number_ >= 0) ::close(number_);
}

}  // namespace tool
