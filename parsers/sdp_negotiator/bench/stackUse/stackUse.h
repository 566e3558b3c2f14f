#ifndef STACK_USE_H
#define STACK_USE_H

#include <memory>
#include <string>
#include <vector>

#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"

/// What a request works on. It lies outside the stack that is measured.
struct Workspace {
  cSdpNegotiator object;
  cSdpNegotiator other;
  std::string body;  ///< the text that both objects hold
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  char second[MAX_SDP_PROTOCOL_DATA_SIZE];
  char third[MAX_SDP_PROTOCOL_DATA_SIZE];
  char record[32];  ///< of removed m-lines
  unsigned char bytes[sizeof(cSdpNegotiator)];
  unsigned int byteCount;
  std::vector<mediaStruct> media;
  std::vector<mDescription> mLines;
  sDescription description;
  char* encoded = nullptr;
  int encodedLength = 0;
  int encodedSize = 0;
  int number = 0;
  unsigned short oLineEnd = 0;
};

/// A request and the topic that it belongs to, named as in the headers.
struct Request {
  const char* topic;
  const char* name;
  void (*run)(Workspace& w);
};

/// The requests of `cSdpNegotiator`, of `sdpModifications`, and the others.
std::vector<Request> objectRequests();
std::vector<Request> textEdits();
std::vector<Request> otherRequests();

#endif
