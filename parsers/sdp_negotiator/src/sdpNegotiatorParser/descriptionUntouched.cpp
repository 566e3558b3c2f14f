#include "sdpNegotiatorParser/descriptionStack.h"

// The frame of a description on a stack that has room for it. This file is compiled without stack clash protection.

namespace sdpneg {

void withDescriptionUntouched(DescriptionWork work, void* context) {
  sDescription description;
  work(context, description);
}

}  // namespace sdpneg
