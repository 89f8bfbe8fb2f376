// One JACK client: opening it on a server, its callbacks, ports and connections. Errors are thrown
// as HostError with a message a user can act on. [UI thread] unless a member says otherwise.
#pragma once

#include <jack/jack.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

// What the JACK threads hand to their owner; each callback must be real-time safe.
class JackEvents {
 public:
  virtual ~JackEvents() = default;
  // [JACK process thread]
  virtual void process(jack_nframes_t frames) = 0;
  // [a JACK thread, possibly the process thread] Only record; act later.
  virtual void bufferSizeChanged(jack_nframes_t frames) = 0;
  virtual void sampleRateChanged(jack_nframes_t rate) = 0;
  virtual void xrun() = 0;
  virtual void serverStopped(const char* reason) = 0;
};

class JackClient {
 public:
  // `serverName` empty: the default server ($JACK_DEFAULT_SERVER or "default"). Never starts a
  // server of its own.
  JackClient(const std::string& clientName, const std::string& serverName);
  ~JackClient();  // deactivates and closes
  JackClient(const JackClient&) = delete;
  JackClient& operator=(const JackClient&) = delete;

  // The name JACK gave (it appends "-01"... when the name is taken).
  std::string name() const;
  jack_nframes_t sampleRate() const;
  jack_nframes_t bufferSize() const;
  // The longest short port name this client can register.
  std::size_t maxPortNameBytes() const;

  // Before activate(); `events` outlives the client.
  void setEvents(JackEvents* events);
  void activate();
  // No callback runs after it returns.
  void deactivate();
  // After the server stopped, the client makes no more requests of it.
  void markServerGone() { serverGone_.store(true); }
  bool serverGone() const { return serverGone_.load(); }

  jack_port_t* registerPort(const std::string& shortName, bool isInput);
  void unregisterPort(jack_port_t* port);
  // False when JACK refused (a name taken by another port of this client).
  bool renamePort(jack_port_t* port, const std::string& shortName);
  std::string portName(const jack_port_t* port) const;  // "client:port"
  std::string portShortName(const jack_port_t* port) const;
  // The full names of the ports connected to `port`.
  std::vector<std::string> connections(const jack_port_t* port) const;
  // False when a port does not exist or JACK refused; connecting twice is no error.
  bool connect(const std::string& source, const std::string& destination);
  bool portExists(const std::string& fullName) const;

  jack_client_t* handle() const { return client_; }

 private:
  jack_client_t* client_ = nullptr;
  bool active_ = false;
  std::atomic<bool> serverGone_{false};
};
