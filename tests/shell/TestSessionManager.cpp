#include "TestSessionManager.h"
#include "TestPaths.h"
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {

TestSessionManager::TestSessionManager(bool refuses) {
  start(refuses);
  while (m_heard.empty()) {
    pollfd file{m_output, POLLIN | POLLHUP, 0};
    if (::poll(&file, 1, 10000) != 1)
      throw std::runtime_error("the session manager did not start");
    read();
    if (m_heard.empty() && file.revents == POLLHUP)
      throw std::runtime_error("the session manager did not start");
  }
  const std::string address = m_heard.front().substr(std::string("address ").size());
  m_heard.clear();
  ::setenv("SESSION_MANAGER", address.c_str(), 1);
}

TestSessionManager::~TestSessionManager() {
  if (m_process) {
    ::kill(m_process, SIGCONT); // In case it was stopped.
    ::close(m_input);           // It then ends and removes its sockets.
    ::waitpid(m_process, nullptr, 0);
  }
  ::close(m_output);
  ::setenv("SESSION_MANAGER", "", 1);
}

void TestSessionManager::start(bool refuses) {
  int input[2], output[2];
  if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0)
    throw std::runtime_error("no pipes to the session manager");
  m_process = ::fork();
  if (m_process == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // Ends the manager even if the tests are aborted.
    ::dup2(input[0], STDIN_FILENO);
    ::dup2(output[1], STDOUT_FILENO);
    ::execl(TALLYMOOR_TEST_SESSION_MANAGER, "test_session_manager", refuses ? "refuse" : nullptr, nullptr);
    ::_exit(127);
  }
  ::close(input[0]);
  ::close(output[1]);
  m_input = input[1];
  m_output = output[0];
  ::fcntl(m_output, F_SETFL, O_NONBLOCK);
}

void TestSessionManager::send(const std::string& lines) {
  if (::write(m_input, lines.data(), lines.size()) != static_cast<ssize_t>(lines.size()))
    throw std::runtime_error("the session manager is gone");
}

void TestSessionManager::read() {
  char bytes[1024];
  for (ssize_t count; (count = ::read(m_output, bytes, sizeof bytes)) > 0;)
    m_unfinished.append(bytes, static_cast<std::size_t>(count));
  for (std::size_t end; (end = m_unfinished.find('\n')) != m_unfinished.npos; m_unfinished.erase(0, end + 1))
    m_heard.push_back(m_unfinished.substr(0, end));
}

const std::vector<std::string>& TestSessionManager::heard() {
  read();
  return m_heard;
}

int TestSessionManager::heard(const std::string& line) {
  read();
  return static_cast<int>(std::count(m_heard.begin(), m_heard.end(), line));
}

void TestSessionManager::hang() {
  ::kill(m_process, SIGSTOP);
}

void TestSessionManager::kill() {
  ::kill(m_process, SIGKILL);
  ::waitpid(m_process, nullptr, 0);
  ::unlink(("/tmp/.ICE-unix/" + std::to_string(m_process)).c_str());
  ::close(m_input);
  m_process = 0;
}

} // namespace Tallymoor
