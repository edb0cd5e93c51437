#pragma once
#include "foundation/Exception.h"
#include "foundation/LinuxPlatform.h"
#include "support/TestProfile.h"
#include <memory>
#include <vector>

namespace Tallymoor {

/// Records documents instead of opening them, and fails on demand.
class RecordingPlatform : public LinuxPlatform {
public:
  struct Behaviour {
    bool writesDates = true;
    bool opens = true;
    bool throwsOnOpening = false;
  };

  /// Replaces the profile's platform until the profile ends.
  static RecordingPlatform& install(const TestProfile& profile, const Behaviour& behaviour) {
    LinuxPlatformOptions options;
    options.dataHome = profile.folder() + "/share";
    options.locale = "en_AU";
    options.programFolder = profile.folder() + "/program";
    auto platform = std::make_unique<RecordingPlatform>(options, behaviour);
    RecordingPlatform& installed = *platform;
    Platform::setInstance(std::move(platform));
    return installed;
  }

  RecordingPlatform(const LinuxPlatformOptions& options, const Behaviour& behaviour)
      : LinuxPlatform(options), m_behaviour(behaviour) {}

  String shortDateFormat(const Date& date) override {
    if (!m_behaviour.writesDates)
      throw Exception(u"no form for dates");
    return LinuxPlatform::shortDateFormat(date);
  }
  bool openDocument(const String& target) override {
    if (m_behaviour.throwsOnOpening)
      throw Exception(u"nothing can be opened");
    m_opened.push_back(target);
    return m_behaviour.opens;
  }
  const std::vector<String>& opened() const { return m_opened; }

private:
  const Behaviour m_behaviour;
  std::vector<String> m_opened;
};

} // namespace Tallymoor
