#include "baresip.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace {

const std::string kHost = "127.0.0.1";

}  // namespace

BaresipSetup talking(const std::string& account, const std::vector<std::string>& modules) {
  BaresipSetup setup{"audio_codecs=PCMU/8000/1,PCMA/8000/1" + account,
                     {"ausine"},
                     "audio_source ausine,440\nausrc_srate 48000\nausrc_channels 2\n"};
  setup.modules.insert(setup.modules.end(), modules.begin(), modules.end());
  return setup;
}

Baresip::Baresip(const TemporaryFolder& folder, const std::string& user,
                 const std::vector<std::string>& options, const BaresipSetup& setup)
    : port_(freePortPair()),
      console_(freePort()),
      process_(BARESIP_PROGRAM, prepare(folder, user, options, setup), folder.path(), user) {
  EXPECT_TRUE(waitUntil([this] { return says("baresip is ready."); }, kLongestStart)) << process_.output();
}

std::vector<std::string> Baresip::prepare(const TemporaryFolder& folder, const std::string& user,
                                          const std::vector<std::string>& options,
                                          const BaresipSetup& setup) const {
  const std::string address = kHost + ":" + port_;
  std::string config = "sip_listen " + address + "\nnet_interface " + kHost + "\ncons_listen " + kHost + ":" +
                       console_ +
                       "\n"
                       "module_path " BARESIP_MODULES
                       "\n"
                       "module g711.so\n"
                       "module aubridge.so\n"
                       "module cons.so\n";
  for (const std::string& module : setup.modules) config += "module " + module + ".so\n";
  folder.write(user + "/config", config + setup.config +
                                     "module_tmp account.so\n"
                                     "module_app menu.so\n"
                                     "audio_player aubridge,nothing\n"
                                     "audio_alert aubridge,nothing\n");
  folder.write(user + "/accounts",
               "<sip:" + user + "@" + address + ">;regint=0;answermode=auto;" + setup.account + "\n");
  folder.write(user + "/contacts", "");
  std::vector<std::string> arguments = {"-s", "-f", folder.path(user)};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

std::size_t Baresip::count(const std::string& text) const {
  const std::string output = process_.output();
  std::size_t times = 0;
  for (std::size_t at = output.find(text); at != std::string::npos; at = output.find(text, at + 1)) ++times;
  return times;
}

std::string Baresip::body(const std::string& start) const {
  const std::string output = process_.output();
  const std::size_t message = output.find(start);
  const std::size_t length = output.find("\r\nContent-Length: ", message);
  const std::size_t body = output.find("\r\n\r\n", length);
  if (message == std::string::npos || body == std::string::npos) return "";
  return replaced(output.substr(body + 4, std::stoul(output.substr(length + 18))), "\r\n", "\n");
}

void Baresip::command(const std::string& name) const {
  const std::string line = "/" + name + "\n";
  sockaddr_in console{};
  console.sin_family = AF_INET;
  console.sin_port = htons(static_cast<in_port_t>(std::stoi(console_)));
  console.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const ssize_t sent = sendto(descriptor, line.data(), line.size(), 0,
                              reinterpret_cast<const sockaddr*>(&console), sizeof console);
  close(descriptor);
  EXPECT_EQ(sent, static_cast<ssize_t>(line.size()));
}

void Baresip::stop() {
  process_.signal(SIGINT);
  EXPECT_EQ(process_.wait(kLongestStart), 0);
}
