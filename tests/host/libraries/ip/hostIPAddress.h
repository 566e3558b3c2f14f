#ifndef HOST_IP_ADDRESS_H
#define HOST_IP_ADDRESS_H

/// How many addresses were reset so far.
int hostAddressResets();

#endif
