#include "storedCalls.h"

#include <hiredis/hiredis.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <random>

namespace {

const std::string kHost = "127.0.0.1";

std::vector<std::string> serverOptions(const std::string& folder, const std::string& port,
                                       const std::vector<std::string>& options) {
  std::vector<std::string> all = {"--port", port,           "--bind", kHost,   "--save",
                                  "",       "--appendonly", "no",     "--dir", folder};
  all.insert(all.end(), options.begin(), options.end());
  return all;
}

std::string textOf(const redisReply& reply) {
  if (reply.type == REDIS_REPLY_INTEGER) return std::to_string(reply.integer);
  std::string text = reply.str != nullptr ? std::string(reply.str, reply.len) : "";
  for (std::size_t i = 0; i < reply.elements; ++i) text += textOf(*reply.element[i]) + " ";
  return text;
}

}  // namespace

std::string offerOf(int version) {
  return "v=0\r\no=alice 21 " + std::to_string(version) +
         " IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio " +
         std::to_string(40'000 + 2 * version) + " RTP/AVP 8\r\n";
}

std::string answerOf(int version) {
  return "v=0\r\no=bob 33 " + std::to_string(version) +
         " IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";
}

RedisServer::RedisServer(const std::string& folder, const std::string& port,
                         const std::vector<std::string>& options)
    : port_(port), process_(REDIS_PROGRAM, serverOptions(folder, port, options), folder, "redis-" + port) {}

bool RedisServer::isReady() const {
  return waitUntil([this] { return ask({"PING"}) == "PONG"; }, kLongestStart);
}

std::string RedisServer::ask(const std::vector<std::string>& words) const {
  const std::unique_ptr<redisContext, void (*)(redisContext*)> context(
      redisConnect(kHost.c_str(), std::stoi(port_)), redisFree);
  if (!context || context->err != 0) return "";
  std::vector<const char*> texts;
  std::vector<std::size_t> sizes;
  for (const std::string& word : words) {
    texts.push_back(word.data());
    sizes.push_back(word.size());
  }
  const std::unique_ptr<void, void (*)(void*)> reply(
      redisCommandArgv(context.get(), static_cast<int>(texts.size()), texts.data(), sizes.data()),
      freeReplyObject);
  return reply ? textOf(*static_cast<const redisReply*>(reply.get())) : "";
}

long RedisServer::count(const std::string& command) const {
  const std::string stats = ask({"INFO", "commandstats"});
  const std::string mark = "cmdstat_" + command + ":calls=";
  const std::size_t at = stats.find(mark);
  return at == std::string::npos ? 0 : std::stol(stats.substr(at + mark.size()));
}

void StoredCalls::startStore() {
  redis_ = std::make_unique<RedisServer>(folder_.path(), freeServerPort());
  ASSERT_TRUE(redis_->isReady()) << redis_->process().output();
  store_ = "redis://" + kHost + ":" + redis_->port();
}

std::unique_ptr<Engine> StoredCalls::startEngine(const std::string& name, const std::string& listen) {
  return std::make_unique<Engine>(folder_, kHost, target_.port(), std::vector<std::string>{"--state", store_},
                                  listen, name);
}

std::string StoredCalls::received(const RawParty& party, const std::string& start) const {
  const std::string message = party.receive(start, "", kLongestStart);
  EXPECT_NE(message, "") << start;
  return message;
}

std::string StoredCalls::invite(const Engine& engine, int call) const {
  caller_.request(engine.address(), {.call = call, .body = offerOf(1)});
  target_.respond(engine.address(), received(target_, "INVITE "), "200 OK", answerOf(1));
  return received(caller_, "SIP/2.0 200 ");
}

std::string StoredCalls::establish(const Engine& engine, int call) const {
  const std::string tag = toTagOf(invite(engine, call));
  caller_.request(engine.address(), {.method = "ACK", .call = call, .toTag = tag});
  received(target_, "ACK ");
  return tag;
}

std::string StoredCalls::reoffer(const Engine& engine, const std::string& tag, int cseq, int call) const {
  caller_.request(engine.address(), {.call = call, .cseq = cseq, .toTag = tag, .body = offerOf(cseq)});
  const std::string offered = received(target_, "INVITE ");
  target_.respond(engine.address(), offered, "200 OK", answerOf(cseq));
  received(caller_, "SIP/2.0 200 ");
  caller_.request(engine.address(), {.method = "ACK", .call = call, .cseq = cseq, .toTag = tag});
  received(target_, "ACK ");
  return offered;
}

std::string StoredCalls::hangUp(const Engine& engine, const std::string& tag, int cseq, int call) const {
  const std::string response = caller_.ask(
      engine.address(), {.method = "BYE", .call = call, .cseq = cseq, .toTag = tag}, kLongestStart);
  EXPECT_EQ(statusOf(response), 200);
  std::string bye = received(target_, "BYE ");
  target_.respond(engine.address(), bye, "200 OK");
  return bye;
}

void StoredCalls::kill(Engine& engine) {
  engine.process().signal(SIGKILL);
  EXPECT_EQ(engine.process().wait(kLongestStart), 128 + SIGKILL);
}

std::string freeServerPort() {
  constexpr int kFirst = 20'000;
  constexpr int kCount = 12'000;  // ports of connections begin behind them
  static std::random_device random;
  for (;;) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int port = kFirst + static_cast<int>(random() % kCount);
    address.sin_port = htons(static_cast<in_port_t>(port));
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool bound = bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    if (bound) return std::to_string(port);
  }
}

int cseqOf(const std::string& message) { return std::stoi("0" + headerOf(message, "CSeq")); }
