#pragma once

namespace Tallymoor {

/// The whole life of the process: refuses a second copy, hands over to the update installer when downloaded
/// updates wait, shows the main window and runs the event loop. The exit status is the loop's on a normal
/// run, 0 when another copy runs, 1 after the hand-over.
int runApplication(int argc, char** argv);

} // namespace Tallymoor
