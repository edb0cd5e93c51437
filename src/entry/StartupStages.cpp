#include "entry/StartupStages.h"

namespace Tallymoor {

namespace {

const StartupStageTexts TEXTS[STAGE_COUNT] = {
    {u"Held Shares at Start Date",
     u"In the following screens you can enter shares which\n"
     u"were already held at your chosen portfolio start date.\n",
     u"Finished entering already held shares?",
     u"Check this button when there are no more shares\n"
     u"left to enter that were held at the portfolio start date",
     u"Shares Already Held",
     u"Specify the share code, date and buy price of a stock\n"
     u"held at the portfolio start date."},
    {u"Shares Purchased Since the Start Date",
     u"In the following screens you can enter shares which were bought\n"
     u"anytime after the start date, including ones subsequently sold.",
     u"Finished entering share purchases?",
     u"Check this button when there are no more shares\n"
     u"left to enter that were bought after the portfolio\n"
     u"start date.",
     u"Shares bought",
     u"Specify the share code, date and buy price of a stock\n"
     u"that was purchased after the portfolio start date."},
    {u"Dividends Received Since the Start Date",
     u"In the following screens you can enter dividends which\n"
     u"were received anytime after the start date.",
     u"Finished entering dividends?",
     u"Check this button when there are no more dividends\n"
     u"left to enter that were received after the portfolio\n"
     u"start date.",
     u"Dividends Received", u"Specify the share code, date and amount of the dividend received"},
    {u"Shares Sold Since Start Date",
     u"In the following screens you can register sales of\n"
     u"the shares you have entered and since sold.",
     u"Finished entering share sales?",
     u"Check this button when there are no more shares\n"
     u"left to sell.",
     u"Shares Sold",
     u"Specify the share code, date and buy price of a stock\n"
     u"held at the portfolio start date."},
    {u"Interest Received since Start Date",
     u"In the following screens you can enter interest\n"
     u"that you have received on your cash reserve.",
     u"Finished entering interest received?",
     u"Check this button when there are no more interest\n"
     u"credits left to enter.",
     u"Interest Received",
     u"Please enter the value of the interest received\n"
     u"for the date of the credit."},
    {u"Deposits Made Since Start Date",
     u"In the following screens you can enter cash deposits\n"
     u"that you have made into your cash reserve.",
     u"Finished entering cash deposits?",
     u"Check this button when there are no cash deposits\n"
     u"left to enter.",
     u"Deposit Made",
     u"Please enter the value of the cash deposit\n"
     u"made for the date of the deposit."},
    {u"Withdrawals Made Since Start Date",
     u"In the following screens you can enter cash withdrawals\n"
     u"that you have made from your cash reserve.",
     u"Finished entering cash withdrawals?",
     u"Check this button when there are no cash withdrawals\n"
     u"left to enter.",
     u"Withdrawal Made",
     u"Please enter the value of the cash withdrawal\n"
     u"made for the date of the debit."},
};

} // namespace

const StartupStageTexts& startupStageTexts(int stage) {
  return TEXTS[stage];
}

} // namespace Tallymoor
