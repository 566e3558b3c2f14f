#include "baresip.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const std::string kHost = "127.0.0.1";

}  // namespace

Baresip::Baresip(const TemporaryFolder& folder, const std::string& user, const std::string& dial,
                 const Setup& setup)
    : port_(freePortPair()),
      console_(freePort()),
      process_(BARESIP_PROGRAM, prepare(folder, user, dial, setup), folder.path(), user) {
  EXPECT_TRUE(waitUntil([this] { return says("baresip is ready."); }, kLongestStart)) << process_.output();
}

std::string Baresip::body(const std::string& start) const {
  const std::string output = process_.output();
  const std::size_t message = output.find(start);
  const std::size_t length = output.find("\r\nContent-Length: ", message);
  const std::size_t body = output.find("\r\n\r\n", length);
  if (message == std::string::npos || body == std::string::npos) return "";
  return replaced(output.substr(body + 4, std::stoul(output.substr(length + 18))), "\r\n", "\n");
}

/// A string of JSON with its length (netstring), over TCP.
void Baresip::command(const std::string& text) const {
  const std::string json = "{\"command\":\"" + text + "\"}";
  const std::string message = std::to_string(json.size()) + ":" + json + ",";
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(std::stoi(console_)));
  EXPECT_EQ(connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(send(connection, message.data(), message.size(), MSG_NOSIGNAL),
            static_cast<ssize_t>(message.size()));
  char reply[512];
  EXPECT_GT(recv(connection, reply, sizeof reply, 0), 0);
  close(connection);
}

std::vector<std::string> Baresip::prepare(const TemporaryFolder& folder, const std::string& user,
                                          const std::string& dial, const Setup& setup) const {
  const std::string address = kHost + ":" + port_;
  std::string modules;
  for (const std::string& module : setup.modules) modules += "module " + module + ".so\n";
  folder.write(user + "/config", "sip_listen " + address +
                                     "\n"
                                     "net_interface " +
                                     kHost +
                                     "\n"
                                     "module_path " BARESIP_MODULES
                                     "\n"
                                     "module g711.so\n"
                                     "module aubridge.so\n" +
                                     modules +
                                     "module_tmp account.so\n"
                                     "module_app menu.so\n"
                                     "module_app ctrl_tcp.so\n"
                                     "ctrl_tcp_listen " +
                                     kHost + ":" + console_ +
                                     "\n"
                                     "ausrc_srate 48000\n"
                                     "ausrc_channels 2\n"
                                     "audio_player aubridge,nothing\n"
                                     "audio_source " +
                                     setup.source +
                                     "\n"
                                     "audio_alert aubridge,nothing\n");
  folder.write(user + "/accounts",
               "<sip:" + user + "@" + address + ">;regint=0;answermode=auto;" + setup.account + "\n");
  folder.write(user + "/contacts", "");
  std::vector<std::string> arguments = {"-s", "-f", folder.path(user)};
  if (!dial.empty()) arguments.insert(arguments.end(), {"-e", "/dial " + dial});
  return arguments;
}
