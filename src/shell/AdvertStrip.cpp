#include "shell/AdvertStrip.h"
#include "foundation/Platform.h"
#include "shell/AdvertLink.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

FXIMPLEMENT(AdvertStrip, FXHorizontalFrame, nullptr, 0)

namespace {

constexpr FXint PICTURE_HEIGHT = AdvertStrip::HEIGHT - 8;
constexpr FXint LARGEST_WIDTH = 468; ///< the usual width of a banner

/// So that it fits the strip, with its proportions kept.
void fit(FXImage& image) {
  const FXint width = image.getWidth(), height = image.getHeight();
  if (width <= LARGEST_WIDTH && height <= PICTURE_HEIGHT)
    return;
  const double factor = std::min(double(LARGEST_WIDTH) / width, double(PICTURE_HEIGHT) / height);
  image.scale(std::max(1, int(width * factor)), std::max(1, int(height * factor)), 1);
}

} // namespace

AdvertStrip::AdvertStrip(FXComposite* parent, FXObject* target, FXSelector first, FXSelector second)
    : FXHorizontalFrame(parent, LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0, HEIGHT, 4, 4, 4, 4) {
  addPlace(m_first, target, first);
  m_separator = new FXVerticalSeparator(this);
  m_separator->hide();
  addPlace(m_second, target, second);
  hide();
}

void AdvertStrip::addPlace(Place& place, FXObject* target, FXSelector selector) {
  place.frame = new AdvertLink(this, target, selector);
  place.frame->hide();
}

/// Null for what the toolkit can't read.
std::unique_ptr<FXImage> AdvertStrip::decode(const std::vector<std::uint8_t>& bytes) const {
  FXMemoryStream stream;
  stream.open(FXStreamLoad, static_cast<FXulong>(bytes.size()), const_cast<FXuchar*>(bytes.data()));
  auto image = std::make_unique<FXGIFImage>(getApp(), nullptr, IMAGE_KEEP);
  if (!image->loadPixels(stream) || image->getWidth() <= 1 || image->getHeight() <= 1)
    return nullptr;
  fit(*image);
  image->create();
  return image;
}

void AdvertStrip::showPending() {
  if (m_pending.image.empty())
    return;
  const PendingAdvert advert = std::exchange(m_pending, {});
  std::unique_ptr<FXImage> image = decode(advert.image);
  if (!image)
    return;
  m_first.image = std::exchange(m_second.image, std::move(image));
  m_first.url = std::exchange(m_second.url, advert.url);
  for (Place* place : {&m_first, &m_second}) {
    place->frame->setImage(place->image.get());
    if (place->image)
      place->frame->show();
  }
  if (m_first.image)
    m_separator->show();
  show();
  recalc();
}

void openAdvert(const String& url) {
  const String lower = url.toLower();
  if (lower.starts_with(u"http://") || lower.starts_with(u"https://"))
    Platform::Instance().openDocument(url);
}

} // namespace Tallymoor
