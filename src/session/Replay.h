#pragma once
#include "session/Change.h"
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Tallymoor {

/// A portfolio that is to be brought to another state.
struct RestoredPortfolio {
  String nameNow;  ///< empty for one that is not there
  String nameThen; ///< empty for one that is to go
  std::uint32_t place;
  bool moves; ///< it is taken out, and put in at that place
  std::string text;
};

/// Where a portfolio is to get a name that another one has now, all that get other names are taken out first.
void makeRoomForNames(std::vector<RestoredPortfolio>& portfolios);

/// Carries the texts of portfolios through changes, forwards or back. Knows no open portfolio.
class Replay {
public:
  struct Portfolio {
    String name;
    std::string text;
  };

  /// All portfolios in the order of the records.
  explicit Replay(std::vector<Portfolio> portfolios);

  /// False, and nothing has changed, if the change does not start from the texts as they are by then.
  bool follow(const Change& change);
  /// The text by then; empty for a portfolio that is not there.
  const std::string& textOf(const String& name) const;
  /// Whether the texts are those that the last change of each left: follow looks at the edited places alone.
  bool isSound() const;
  /// Those that are not as they were at first. Leaves nothing here.
  std::vector<RestoredPortfolio> takeChanged();

private:
  struct Followed {
    String nameNow; ///< at first
    std::string text;
    RecordsState state{};
    bool moves = false;
    bool isChanged = false;
  };

  static bool isIn(const Followed& portfolio, const RecordsState& state);
  bool startsHere(const Change& change) const;
  std::vector<String> orderAfter(const Change& change) const;

  std::map<String, Followed> m_portfolios;
  std::vector<String> m_order; ///< the names by then
  std::map<String, RecordsState> m_first;
  std::vector<String> m_gone; ///< names at first
};

} // namespace Tallymoor
