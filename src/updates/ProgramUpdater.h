#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Thread.h"
#include "updates/UpdateSettings.h"
#include <atomic>
#include <vector>

namespace Tallymoor {

class Updates;
struct UpdatesFound;

/// The background thread that looks for updates every three hours, tells the user, and downloads and
/// installs them on request. It uses the network without a lock; messages to the user and the
/// reload of installed documents are short stretches under the big mutex. It starts in its constructor; the
/// first pass comes after the start delay.
class ProgramUpdater : public Thread {
public:
  explicit ProgramUpdater(const UpdateSettings& settings = UpdateSettings::current());
  /// Stops the thread and waits for it, with the big mutex given up meanwhile.
  ~ProgramUpdater() override;

  /// The next pass, which is woken, downloads and installs. Any thread.
  void requestDownload();
  /// The user is online again: a download that waits for that begins.
  void connectionIsBack();
  /// The user has gone offline: what is being fetched is aborted without a message, and a requested
  /// download waits until the connection is back.
  void connectionIsGone() { abortPass(); }
  /// One pass on the calling thread, which must not hold the big mutex. Throws nothing.
  void runPass();

protected:
  void threadFunction() override;

private:
  static bool isOffline();
  bool isCutOff() const;
  void look();
  void downloadAll();
  void waitForConnection();
  void install(Updates& updates, UpdatesFound& found);
  using Keys = std::vector<String>;
  static void tell(Keys& keys, const String& text, int level);
  static void takeBack(Keys& keys);
  template <class Work>
  void inStretch(Work work);

  const UpdateSettings m_settings;
  std::atomic<bool> m_downloadRequested = false;
  // Keys of the warnings that hold, each until its cause has gone.
  Keys m_available GUARDED_BY(bigMutex());
  Keys m_failed GUARDED_BY(bigMutex());
  Keys m_installed GUARDED_BY(bigMutex());
};

} // namespace Tallymoor
