#pragma once
#include <string>
#include <vector>

namespace Tallymoor {

/// Starts a program in a new session, without a shell and without our open files, and doesn't wait for it.
/// The child is reaped when it ends. True if it could be started.
bool startProgram(const std::string& program, const std::vector<std::string>& arguments);

/// True if a program file and its folder belong to the user or to root and nobody else can write to them.
/// Such a program may be started without asking.
bool isTrustedProgram(const std::string& path);

} // namespace Tallymoor
