#ifndef B2BUA_TEST_BARESIP_H
#define B2BUA_TEST_BARESIP_H

#include <string>
#include <vector>

#include "calls.h"

/// What a client has beyond the least.
struct BaresipSetup {
  std::string account = "audio_codecs=PCMU/8000/1,PCMA/8000/1";  ///< parameters of its account
  std::vector<std::string> modules = {};
  std::string config = "audio_source aubridge,nothing\n";  ///< lines, the audio source among them
};

/// A client that sends a tone.
/// @param account  further parameters of its account
BaresipSetup talking(const std::string& account = "", const std::vector<std::string>& modules = {});

/// A baresip on loopback that answers by itself, and plays nowhere what it hears.
class Baresip {
 public:
  /// @param user  names its account and its files
  Baresip(const TemporaryFolder& folder, const std::string& user,
          const std::vector<std::string>& options = {}, const BaresipSetup& setup = {});

  const std::string& port() const { return port_; }
  Process& process() { return process_; }
  bool says(const std::string& text) const { return count(text) != 0; }
  /// How often it said a text.
  std::size_t count(const std::string& text) const;

  /// The body of a message in its trace of what it sends and gets; empty without one.
  /// @param start  first line, and what stands before it
  std::string body(const std::string& start) const;

  /// Gives it a command as from its console: "hold", "resume", "hangup".
  void command(const std::string& name) const;
  /// Ends it, and with it its calls.
  void stop();

 private:
  std::vector<std::string> prepare(const TemporaryFolder& folder, const std::string& user,
                                   const std::vector<std::string>& options, const BaresipSetup& setup) const;

  std::string port_;
  std::string console_;
  Process process_;
};

#endif
