#ifndef SDPNEG_DESCRIPTOR_H
#define SDPNEG_DESCRIPTOR_H

#include "input/inputFiles.h"

namespace tool {

/// An input opened for reading; what it opened, it closes.
class Descriptor {
 public:
  explicit Descriptor(const Input& input);
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  /// Negative where it cannot be opened; errno tells why.
  int number() const { return number_; }

 private:
  bool owned_;
  int number_;
};

}  // namespace tool

#endif
