#pragma once
#include "shell/AdvertThread.h"
#include <fx.h>
#include <memory>

namespace Tallymoor {

class AdvertLink;

/// The strip of the last two adverts, each a picture that is a link. It takes no room until there is one to
/// show. GUI thread only, under the big mutex.
class AdvertStrip : public FXHorizontalFrame {
  FXDECLARE(AdvertStrip)
public:
  static constexpr FXint HEIGHT = 60;

  /// A click, or Return, sends the target SEL_LEFTBUTTONPRESS with the first or the second selector.
  AdvertStrip(FXComposite* parent, FXObject* target, FXSelector first, FXSelector second);

  /// Where the thread leaves what it has fetched.
  PendingAdvert& pending() { return m_pending; }
  /// Takes the waiting advert, if there is one, into the second place, and what stood there into the first.
  void showPending();

  /// The links of the two places; empty where no advert is.
  const String& advertUrl1() const { return m_first.url; }
  const String& advertUrl2() const { return m_second.url; }

protected:
  AdvertStrip() {}

private:
  struct Place {
    AdvertLink* frame = nullptr;
    std::unique_ptr<FXImage> image;
    String url;
  };

  void addPlace(Place& place, FXObject* target, FXSelector selector);
  std::unique_ptr<FXImage> decode(const std::vector<std::uint8_t>& bytes) const;

  PendingAdvert m_pending;
  Place m_first;
  Place m_second;
  FXVerticalSeparator* m_separator = nullptr; ///< shown between two adverts
};

/// Opens an advert's link, which must be a web address: anything else, an empty one too, is passed over.
void openAdvert(const String& url);

} // namespace Tallymoor
