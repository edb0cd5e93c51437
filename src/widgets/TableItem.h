#pragma once
#include <fx.h>

namespace Tallymoor {

/// A cell with a tint of its own.
class TableItem : public FXTableItem {
  FXDECLARE(TableItem)
public:
  /// No tint: the cell shows the table's background.
  static constexpr FXColor NO_COLOUR = FXColor(-1);

  explicit TableItem(const FXString& text, FXIcon* icon = nullptr, void* data = nullptr)
      : FXTableItem(text, icon, data) {}

  /// As getText, without a copy.
  const FXString& label() const { return FXTableItem::label; }
  /// In this font, which is always the same. Measured again only after the text has changed.
  FXint textWidth(const FXFont& font) const;
  void setText(const FXString& text) override;
  FXColor colour() const { return m_colour; }
  void setColour(FXColor colour) { m_colour = colour; }
  /// The tint that the cell has by itself, whatever its row shows.
  FXColor defaultColour() const { return m_defaultColour; }
  void setDefaultColour(FXColor colour) { m_defaultColour = colour; }

protected:
  TableItem() = default;
  /// A selected cell keeps the toolkit's background.
  void drawBackground(const FXTable* table, FXDC& dc, FXint x, FXint y, FXint w, FXint h) const override;

private:
  FXColor m_colour = NO_COLOUR;
  FXColor m_defaultColour = NO_COLOUR;
  mutable FXint m_textWidth = -1; ///< -1 until it is measured
};

} // namespace Tallymoor
