#pragma once
#include <string>
#include <vector>

namespace Tallymoor {

/// Starts a program without a shell, in a session of its own, with none of our open files. Nobody waits for
/// it, and its end leaves no process behind. True when it could be started.
bool startProgram(const std::string& program, const std::vector<std::string>& arguments);

/// True when a program file and its folder belong to the user or to root, and nobody else can write to them:
/// what may be started without asking.
bool isTrustedProgram(const std::string& path);

} // namespace Tallymoor
