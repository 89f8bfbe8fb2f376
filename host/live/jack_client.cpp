#include "host/live/jack_client.h"

#include <cerrno>
#include <cstring>

#include "host/runtime/host_error.h"

namespace {

int onProcess(jack_nframes_t frames, void* arg) {
  static_cast<JackEvents*>(arg)->process(frames);
  return 0;
}

int onBufferSize(jack_nframes_t frames, void* arg) {
  static_cast<JackEvents*>(arg)->bufferSizeChanged(frames);
  return 0;
}

int onSampleRate(jack_nframes_t rate, void* arg) {
  static_cast<JackEvents*>(arg)->sampleRateChanged(rate);
  return 0;
}

int onXrun(void* arg) {
  static_cast<JackEvents*>(arg)->xrun();
  return 0;
}

void onShutdown(jack_status_t /*code*/, const char* reason, void* arg) {
  static_cast<JackEvents*>(arg)->serverStopped(reason);
}

std::string openFailure(jack_status_t status, const std::string& clientName,
                        const std::string& serverName) {
  const std::string server =
      serverName.empty() ? "the JACK server" : "the JACK server '" + serverName + "'";
  if ((status & JackServerFailed) != 0) {
    return "cannot connect to " + server +
           ": is it running? (start one with jackd or qjackctl, or use PipeWire's JACK)";
  }
  if ((status & JackVersionError) != 0) return server + " speaks another protocol version";
  if ((status & JackInvalidOption) != 0) return "the client name '" + clientName + "' is not valid";
  return "cannot open a JACK client named '" + clientName + "' on " + server + " (status 0x" +
         [status] {
           char hex[16];
           std::snprintf(hex, sizeof hex, "%x", static_cast<unsigned>(status));
           return std::string(hex);
         }() +
         ")";
}

}  // namespace

JackClient::JackClient(const std::string& clientName, const std::string& serverName) {
  jack_set_error_function([](const char*) {});  // failures are reported through HostError
  jack_set_info_function([](const char*) {});
  jack_status_t status{};
  const auto options =
      static_cast<jack_options_t>(JackNoStartServer | (serverName.empty() ? 0 : JackServerName));
  client_ = jack_client_open(clientName.c_str(), options, &status,
                             serverName.empty() ? nullptr : serverName.c_str());
  if (client_ == nullptr) throw HostError(openFailure(status, clientName, serverName));
}

JackClient::~JackClient() {
  deactivate();
  jack_client_close(client_);
}

void JackClient::deactivate() {
  if (active_ && !serverGone()) jack_deactivate(client_);
  active_ = false;
}

std::string JackClient::name() const {
  return jack_get_client_name(client_);
}

jack_nframes_t JackClient::sampleRate() const {
  return jack_get_sample_rate(client_);
}

jack_nframes_t JackClient::bufferSize() const {
  return jack_get_buffer_size(client_);
}

std::size_t JackClient::maxPortNameBytes() const {
  const int full = jack_port_name_size();  // with the client's name, ':' and the final zero
  const auto used = name().size() + 2;
  return full > static_cast<int>(used) ? static_cast<std::size_t>(full) - used : 1;
}

void JackClient::setEvents(JackEvents* events) {
  jack_set_process_callback(client_, onProcess, events);
  jack_set_buffer_size_callback(client_, onBufferSize, events);
  jack_set_sample_rate_callback(client_, onSampleRate, events);
  jack_set_xrun_callback(client_, onXrun, events);
  jack_on_info_shutdown(client_, onShutdown, events);
}

void JackClient::activate() {
  if (jack_activate(client_) != 0)
    throw HostError("the JACK server refused to start the client " + name());
  active_ = true;
}

jack_port_t* JackClient::registerPort(const std::string& shortName, bool isInput) {
  jack_port_t* port = jack_port_register(client_, shortName.c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                         isInput ? JackPortIsInput : JackPortIsOutput, 0);
  if (port == nullptr)
    throw HostError("the JACK server refused the port " + name() + ":" + shortName);
  return port;
}

void JackClient::unregisterPort(jack_port_t* port) {
  if (!serverGone()) jack_port_unregister(client_, port);
}

bool JackClient::renamePort(jack_port_t* port, const std::string& shortName) {
  return !serverGone() && jack_port_rename(client_, port, shortName.c_str()) == 0;
}

std::string JackClient::portName(const jack_port_t* port) const {
  return jack_port_name(port);
}

std::string JackClient::portShortName(const jack_port_t* port) const {
  return jack_port_short_name(port);
}

std::vector<std::string> JackClient::connections(const jack_port_t* port) const {
  std::vector<std::string> names;
  if (serverGone()) return names;
  const char** list = jack_port_get_all_connections(client_, port);
  for (const char** p = list; p != nullptr && *p != nullptr; ++p) names.emplace_back(*p);
  if (list != nullptr) jack_free(static_cast<void*>(const_cast<char**>(list)));
  return names;
}

bool JackClient::connect(const std::string& source, const std::string& destination) {
  if (serverGone()) return false;
  const int result = jack_connect(client_, source.c_str(), destination.c_str());
  return result == 0 || result == EEXIST;
}

bool JackClient::portExists(const std::string& fullName) const {
  return !serverGone() && jack_port_by_name(client_, fullName.c_str()) != nullptr;
}
