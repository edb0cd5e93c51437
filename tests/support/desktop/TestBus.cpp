#include "support/desktop/TestBus.h"
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Tallymoor {

namespace {

std::string configuration(const std::string& address) {
  return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
         " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
         "<busconfig><type>session</type><listen>" +
         address +
         "</listen><policy context=\"default\"><allow send_destination=\"*\"/><allow eavesdrop=\"true\"/>"
         "<allow own=\"*\"/></policy></busconfig>\n";
}

/// Runs in the child that becomes the daemon. Never returns.
void becomeDaemon(std::vector<std::string>& arguments, const std::string& log) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL); // Ends the daemon even if the tests are aborted.
  ::dup2(::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), STDERR_FILENO);
  std::vector<char*> pointers;
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  ::execvp(pointers[0], pointers.data());
  ::_exit(127);
}

} // namespace

TestBus::TestBus(const std::string& folder)
    : m_configuration(folder + "/bus.conf"), m_log(folder + "/bus.log"), m_socket(folder + "/bus"),
      m_address("unix:path=" + m_socket) {
  std::ofstream(m_configuration) << configuration(m_address);
  start();
  ::setenv("DBUS_SESSION_BUS_ADDRESS", m_address.c_str(), 1);
}

TestBus::~TestBus() {
  stop();
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
}

void TestBus::start() {
  int ready[2];
  if (::pipe(ready) != 0)
    throw std::runtime_error("no pipe to the bus");
  std::vector<std::string> arguments{"dbus-daemon",
                                     "--nofork",
                                     "--nopidfile",
                                     "--nosyslog",
                                     "--config-file=" + m_configuration,
                                     "--address=" + m_address,
                                     "--print-address=" + std::to_string(ready[1])};
  m_daemon = ::fork();
  if (m_daemon == 0)
    becomeDaemon(arguments, m_log);
  ::close(ready[1]);
  char byte;
  const bool answered = ::read(ready[0], &byte, 1) == 1; // The daemon prints its address when it listens.
  ::close(ready[0]);
  if (!answered)
    throw std::runtime_error("dbus-daemon did not start, see " + m_log);
}

void TestBus::stop() {
  if (m_daemon == 0)
    return;
  ::kill(m_daemon, SIGKILL);
  ::waitpid(m_daemon, nullptr, 0);
  ::unlink(m_socket.c_str());
  m_daemon = 0;
}

} // namespace Tallymoor
