#include "tests/host/spatiola/jack_fixture.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <stdexcept>

namespace {

constexpr const char* kJackd = "/usr/bin/jackd";

jack_client_t* openClient(const std::string& name, const std::string& server) {
  return jack_client_open(name.c_str(),
                          static_cast<jack_options_t>(JackNoStartServer | JackServerName), nullptr,
                          server.c_str());
}

// The names of a list JACK allocated, which is freed.
std::vector<std::string> takeNames(const char** list) {
  std::vector<std::string> names;
  for (const char** p = list; p != nullptr && *p != nullptr; ++p) names.emplace_back(*p);
  if (list != nullptr) jack_free(static_cast<void*>(list));
  return names;
}

}  // namespace

bool JackServer::available() {
  return access(kJackd, X_OK) == 0;
}

JackServer::JackServer()
    : name_("spatiola-test-" + std::to_string(getpid()) + "-" +
            std::to_string(std::chrono::steady_clock::now().time_since_epoch().count())) {
  jackd_ = startCommand(
      {kJackd, "--no-realtime", "-n", name_, "-d", "dummy", "-r", "48000", "-p", "256"});
  jack_set_error_function([](const char*) {});
  jack_set_info_function([](const char*) {});
  running_ = eventually([&] {
    jack_client_t* probe = openClient("ready", name_);
    if (probe != nullptr) jack_client_close(probe);
    return probe != nullptr;
  });
  if (!running_) {
    kill();
    throw std::runtime_error("jackd did not start as " + name_ +
                             " (\"Too many servers\": a jackd killed with SIGKILL keeps one of "
                             "the 8 slots of /dev/shm/jack-shm-registry)");
  }
}

JackServer::~JackServer() {
  if (running_) kill();
}

// SIGTERM, not SIGKILL: a server that dies without closing keeps its slot in JACK's machine-wide
// registry, which holds 8, until one of the same name starts again.
void JackServer::kill() {
  ::kill(jackd_.pid, SIGTERM);
  finishCommand(jackd_);
  running_ = false;
}

LiveProgram::LiveProgram(const std::string& server, std::vector<std::string> args,
                         std::vector<std::string> command) {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  std::vector<std::string> argv{SPATIOLA_EXE};
  argv.insert(argv.end(), command.begin(), command.end());
  argv.insert(argv.end(), {"--server", server});
  argv.insert(argv.end(), args.begin(), args.end());
  program_ = startCommand(argv, "/dev/fd/" + std::to_string(fds[0]));
  close(fds[0]);
  stdinFd_ = fds[1];
  signal(SIGPIPE, SIG_IGN);  // a program that ended makes send() fail, not the test
}

LiveProgram::~LiveProgram() {
  send("quit");
  if (wait() < 0) kill(program_.pid, SIGKILL);
  finishCommand(program_);
  close(stdinFd_);
}

void LiveProgram::send(const std::string& line) {
  const std::string text = line + "\n";
  if (write(stdinFd_, text.data(), text.size()) < 0) return;
}

int LiveProgram::wait(std::chrono::milliseconds timeout) {
  eventually(
      [&] {
        if (exitCode_ < 0) exitCode_ = exitCodeIfEnded(program_.pid);
        return exitCode_ >= 0;
      },
      timeout);
  return exitCode_;
}

ProbeClient::ProbeClient(const std::string& server, std::vector<float> levels, int sinks)
    : client_(openClient("probe", server)),
      levels_(std::move(levels)),
      last_(static_cast<std::size_t>(sinks)) {
  if (client_ == nullptr) throw std::runtime_error("the probe client cannot open");
  for (std::size_t i = 0; i < levels_.size(); ++i) {
    sources_.push_back(jack_port_register(client_, ("src_" + std::to_string(i + 1)).c_str(),
                                          JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0));
  }
  for (int i = 0; i < sinks; ++i) {
    sinks_.push_back(jack_port_register(client_, ("sink_" + std::to_string(i + 1)).c_str(),
                                        JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0));
  }
  jack_set_process_callback(client_, process, this);
  jack_activate(client_);
}

ProbeClient::~ProbeClient() {
  jack_deactivate(client_);
  jack_client_close(client_);
}

int ProbeClient::process(jack_nframes_t frames, void* self) {
  auto& probe = *static_cast<ProbeClient*>(self);
  for (std::size_t i = 0; i < probe.sources_.size(); ++i) {
    auto* out = static_cast<float*>(jack_port_get_buffer(probe.sources_[i], frames));
    std::fill_n(out, frames, probe.levels_[i]);
  }
  for (std::size_t i = 0; i < probe.sinks_.size(); ++i) {
    const auto* in = static_cast<const float*>(jack_port_get_buffer(probe.sinks_[i], frames));
    probe.last_[i].store(in[frames - 1]);
  }
  return 0;
}

bool ProbeClient::setBufferSize(int frames) {
  return jack_set_buffer_size(client_, static_cast<jack_nframes_t>(frames)) == 0;
}

std::vector<std::string> ProbeClient::ports(const std::string& pattern) const {
  return takeNames(jack_get_ports(client_, pattern.c_str(), nullptr, 0));
}

std::vector<std::string> ProbeClient::connections(const std::string& port) const {
  jack_port_t* handle = jack_port_by_name(client_, port.c_str());
  return handle == nullptr ? std::vector<std::string>{}
                           : takeNames(jack_port_get_all_connections(client_, handle));
}
