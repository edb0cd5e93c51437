#pragma once

/// Texts with faults that users have seen since the first version: misspelt, or naming another operation than
/// the one that fails. They stay, because users know them, search for them and write them in reports of
/// faults. Each says what is wrong with it. A new text is written right, and nothing new comes in here.
namespace Tallymoor::kept {

// Misspelt.
inline constexpr const char* FAILED_TO_CONNECT = "Failedto connect"; ///< a space is missing
inline constexpr const char* BLACK = "bloack";                       ///< a colour; shown as black
inline constexpr const char* FACE = "Ariel";                         ///< a font that no system has
inline constexpr const char16_t* CALENDAR_YEAR = u"Calender Year %"; ///< "Calendar"
inline constexpr const char16_t* DAY_MOVE = u"Day move";             ///< elsewhere "Day Move"
inline constexpr const char16_t* LIMITS_BY_RANGE =                   ///< "multiple"
    u"Min/Max calculated as a multple of the ATR above and below the LR Value";
inline constexpr const char16_t* REFRESH_THE_RECORD = ///< "refresh"
    u"No capital record for the sell date. Please refesh the capital record";
inline constexpr const char16_t* NO_SUCH_REFERENCE = ///< "can't"
    u"XMLElement::markContentUnsafe - cant find referenceName ";
inline constexpr const char16_t* NO_SHARES_TO_SELL = ///< "can't"
    u"SharePortfolioUser::sellShares - cant find held shares to sell";
inline constexpr const char16_t* NO_CACHED_PRICE = ///< "don't"
    u"TallymoorInternet::getCachedPrice - dont have cached price for code ";
inline constexpr const char16_t* UNKNOWN_CODE = ///< "don't"
    u"PriceUpdater::getCurrentPrice - dont' have this code: ";
inline constexpr const char16_t* NEITHER_FOUND =
    u"XMLTagFind::endElement - neither are present"; ///< "neither is"

// Named after another operation or class.
inline constexpr const char16_t* EDIT_OF_SALE = u"ShareHeldTable::onEdit failed."; ///< SharesSoldTable's
inline constexpr const char16_t* DELETE_OF_PARCEL =
    u"SharesHeldTable::onDelete failed."; ///< ShareHeldTable's
inline constexpr const char16_t* BUY_OF_WATCHED = u"WatchlistTable::onRemoveRow failed."; ///< its purchase
inline constexpr const char16_t* BAD_LIMITS = ///< of any table with limits
    u"SharesHeldTable::MinMaxFromString - bad min/max format ";
inline constexpr const char16_t* DATE_OF_PURCHASE =
    u"SellSharesPanel::onChooseBuyDate failed."; ///< EditSoldShareDialog's
inline constexpr const char16_t* DATE_OF_SALE =
    u"SellSharesPanel::onChooseSellDate failed.";  ///< EditSoldShareDialog's
inline constexpr const char16_t* UNKNOWN_ELEMENT = ///< an element that is not allowed there
    u"XMLElement::startElement - pFoundSubElementRego == NULL in ";
inline constexpr const char16_t* FIND_REGISTRATION = ///< "rego": a registration, looked up by name
    u"XMLElement::findRego: ";
inline constexpr const char16_t* FIND_REGISTRATION_TO_READ = u"XMLElement::findRego(2): "; ///< as above
inline constexpr const char16_t* CLICK_ON_CELL = u"TallymoorWindow::onAbout failed.";      ///< CellGrid's

// Named after the platform of the first version and its functions.
inline constexpr const char16_t* MAKE_FOLDERS = u"Win32Platform::userHomeDirectory - ";
inline constexpr const char16_t* NO_HOME_FOLDER = u"SHGetFolderPath failed!";
inline constexpr const char16_t* NO_VENDOR_FOLDER = u"CreateDirectory(companyFolder) failed!";
inline constexpr const char16_t* NO_PRODUCT_FOLDER = u"CreateDirectory(productFolder) failed!";
inline constexpr const char16_t* NO_SUCH_DAY = u"Win32Platform::shortDateFormat - invalid date: ";
inline constexpr const char16_t* UNREADABLE_PROGRAM_FILE =
    u"Win32Platform::getFileVersion - GetFileVersionInfo failed for ";
inline constexpr const char16_t* NO_FILE_VERSION =
    u"Win32Platform::getFileVersion - VerQueryValue failed for ";
inline constexpr const char16_t* NOT_ONLINE = u"Win32HTTPClient::goOnline - InternetAttemptConnect failed ";
inline constexpr const char16_t* BAD_STATUS = ///< the line break is one word early
    u"Win32HTTPClient::getResponse - HTTP GET failed \nwith code: ";

} // namespace Tallymoor::kept
