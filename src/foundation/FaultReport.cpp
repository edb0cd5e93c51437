#include "foundation/FaultReport.h"
#include <array>
#include <csignal>
#include <string_view>
#include <unistd.h>

namespace Tallymoor {

namespace {

constexpr std::string_view FORM = "C Exception number 0x........ was thrown from 0x........\n";
constexpr std::size_t DIGITS = 8;
constexpr std::size_t CODE_AT = FORM.find('.');
constexpr std::size_t ADDRESS_AT = FORM.size() - 1 - DIGITS;

using FaultLine = std::array<char, FORM.size()>;

void putDigits(FaultLine& line, std::size_t at, std::uint32_t number) {
  for (std::size_t place = DIGITS; place > 0; --place, number >>= 4)
    line[at + place - 1] = "0123456789ABCDEF"[number & 15];
}

/// Async-signal-safe.
FaultLine faultLine(std::uint32_t code, std::uintptr_t address) {
  FaultLine line{};
  for (std::size_t i = 0; i < line.size(); ++i)
    line[i] = FORM[i];
  putDigits(line, CODE_AT, code);
  putDigits(line, ADDRESS_AT, static_cast<std::uint32_t>(address));
  return line;
}

void reportAndEnd(int signal, siginfo_t* info, void*) {
  const bool sent = info->si_code <= 0; // Sent by a process, so there is no fault address.
  const FaultLine line = faultLine(static_cast<std::uint32_t>(signal),
                                   sent ? 0 : reinterpret_cast<std::uintptr_t>(info->si_addr));
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
  ::raise(signal); // The default action is restored by now.
}

} // namespace

String faultText(std::uint32_t code, std::uintptr_t address) {
  const FaultLine line = faultLine(code, address);
  return String::Base(line.begin(), line.end() - 1);
}

void reportFaults() {
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
    struct sigaction present {};
    if (::sigaction(signal, nullptr, &present) != 0 || present.sa_handler != SIG_DFL)
      continue;
    struct sigaction ours {};
    ours.sa_sigaction = reportAndEnd;
    ours.sa_flags = static_cast<int>(SA_SIGINFO | SA_RESETHAND | SA_NODEFER);
    sigemptyset(&ours.sa_mask);
    ::sigaction(signal, &ours, nullptr);
  }
}

} // namespace Tallymoor
