#pragma once
#include "widgets/ChartFont.h"
#include "widgets/ChartModel.h"
#include <optional>
#include <string>

namespace Tallymoor {

enum class ChartFormat { SVG, PDF, PNG };

/// By the extension of the file's name, whatever its case.
std::optional<ChartFormat> chartFormatOf(const String& path);

/// The chart as the bytes of a file. Drawings (SVG, PDF) are laid out for this size in pixels and can be
/// scaled; a PDF has one page. Lines and markers can be told apart in black and white. Throws Exception when
/// it can't be drawn.
std::string chartDocument(const ChartModel& model, ChartFormat format, int width, int height,
                          const ChartFont& font);

/// As an SVG element to stand in a page of HTML, with which it scales; its title and description hold its
/// texts.
String chartSvg(const ChartModel& model, int width, int height);

} // namespace Tallymoor
