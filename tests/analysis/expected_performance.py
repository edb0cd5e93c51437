#!/usr/bin/env python3
"""Computes the performance figures and indicators in data/performance/*.txt with an independent model.

The portfolios are those of expected_sequences.py, with the real index in samples/prices and the sample market, whose
prices are printed by the program sample_prices. The figures are computed from their definitions in decimal arithmetic,
without code of the program. They follow "->" in the files.

    expected_performance.py SAMPLE_PRICES            checks the files against the model; the exit code is 1 if they
                                                     differ
    expected_performance.py SAMPLE_PRICES --write    writes the model's figures into the files

The program computes in binary fractions and rounds exact ties away from zero. The model is exact to 60 digits. It
rejects a figure at a tie or so near to one that binary fractions could round to the other side: use another day then.
So the texts must agree to the last digit.
"""
import calendar
import subprocess
import sys
from bisect import bisect_left, bisect_right
from datetime import date, timedelta
from decimal import Decimal, ROUND_HALF_UP
from itertools import accumulate
from pathlib import Path

sys.dont_write_bytecode = True  # Leaves no files in the source tree.
sys.path.insert(0, str(Path(__file__).parents[1] / "books"))
import expected_sequences
from expected_sequences import Failure, Portfolio, Refused, day_text, fixed, read_day, words_of, zero

REAL_INDEX = "^SPHIST"
LAST_DAY = date(2026, 3, 2)  # A Monday.
PRICES = Path(__file__).parents[2] / "samples" / "prices"
WEEKS, FEWEST_WEEKS, RANGES_FROM_VALUE, RISK = 26, 8, 2, Decimal("0.02")
SPANS = (1, 3, 6, 9, 12)
NEARNESS = Decimal("1e-5")  # Maximum distance from a tie, in units of the last digit.
EMPTY = "-"


# ---- texts

def figure(value, places):
    """The text shown by the program, "-" for an empty cell."""
    if value is None:
        return EMPTY
    beyond = abs(value).scaleb(places) % 1
    if beyond and abs(beyond - Decimal("0.5")) < NEARNESS:
        raise Refused(f"{value} lies between two roundings at {places} places")
    return fixed(value, places)


def percent(value):
    return EMPTY if value is None else figure(value, 2) + "%"


def money(value):
    return figure(value, 2)


def price(value):
    return figure(value, 4)


# ---- days

def month_end(day, months_back=0):
    """The last day of the month, a number of months before the day's month."""
    month = day.year * 12 + day.month - 1 - months_back
    year, month = divmod(month, 12)
    return date(year, month + 1, calendar.monthrange(year, month + 1)[1])


def friday_before(day):
    """The last Friday before the day; the weeks up to it are complete."""
    return day - timedelta((day.weekday() - 5) % 7 + 1)


# ---- prices

class Market:
    """Closes of every day (the previous one on a day without trading), and highs and lows of trading days."""

    def __init__(self, sample_prices):
        self.sample_prices = sample_prices
        self.closes = {}  # Maps (code, day) to the close.
        self.ranges = {}  # Maps (code, day) to (high, low).
        self.known = set()

    def load(self, code):
        if code in self.known:
            return
        self.known.add(code)
        previous, when = None, None
        for day, high, low, close in self.rows(code):
            while when and when < day:
                self.closes[code, when] = previous
                when += timedelta(1)
            self.closes[code, day], self.ranges[code, day] = close, (high, low)
            previous, when = close, day + timedelta(1)
        while when and when <= LAST_DAY:
            self.closes[code, when] = previous
            when += timedelta(1)

    def rows(self, code):
        if code == REAL_INDEX:
            text = (PRICES / f"{code}.csv").read_text(encoding="ascii")
        else:
            after = LAST_DAY + timedelta(1)
            done = subprocess.run([self.sample_prices, code, after.isoformat()], capture_output=True, text=True)
            if done.returncode != 0 and "is not listed" not in done.stderr:
                raise Refused(f"{self.sample_prices} {code}: {done.stderr}")
            text = done.stdout  # Empty for an unlisted code.
        for line in text.splitlines()[1:]:
            fields = line.split(",")
            # The cache stores four decimals.
            yield (date.fromisoformat(fields[0]), *(Decimal(fixed(Decimal(fields[i]), 4)) for i in (2, 3, 4)))

    def close(self, code, day):
        self.load(code)
        return self.closes.get((code, day))


# ---- indicators

def may_be_split(before, close):
    """True for a halved or doubled price, or one within a tenth of a whole ratio; not for a fall by a third."""
    for jump in (before / close, close / before):
        whole = jump.quantize(Decimal(1), ROUND_HALF_UP)
        if jump >= 2 or whole > 1 and max(jump / whole, whole / jump) <= Decimal("1.1"):
            return True
    return False


def last_split(market, code, first, day):
    """The last day up to this one whose close suggests a split since the trading day before."""
    before, last = None, first
    while first <= day:
        if (code, first) in market.ranges:
            close = market.closes[code, first]
            if before and may_be_split(before, close):
                last = first
            before = close
        first += timedelta(1)
    return last


def weeks_before(market, code, day, count):
    """(close, high, low) of the complete weeks, oldest first."""
    market.load(code)
    weeks, friday = [], friday_before(day)
    start = last_split(market, code, friday - timedelta(7 * count - 1), day)
    while len(weeks) < count:
        days = [friday + timedelta(shift) for shift in range(-4, 3)]
        trading = [d for d in days if (code, d) in market.ranges and start <= d < day]
        if not trading:
            break
        weeks.insert(0, (market.closes[code, trading[-1]], max(market.ranges[code, d][0] for d in trading),
                         min(market.ranges[code, d][1] for d in trading)))
        friday -= timedelta(7)
    return weeks


def regression(values):
    """Intercept and slope of the least-squares line over 0, 1, 2..."""
    n = Decimal(len(values))
    xs = [Decimal(x) for x in range(len(values))]
    mean_x, mean_y = sum(xs) / n, sum(values) / n
    slope = sum((x - mean_x) * (y - mean_y) for x, y in zip(xs, values)) / sum((x - mean_x) ** 2 for x in xs)
    return mean_y - slope * mean_x, slope


def true_range(week, before):
    """The week's price range, extended to the previous close if there is one."""
    _, high, low = week
    return high - low if before is None else max(high, before[0]) - min(low, before[0])


def indicators(market, code, day, capital):
    """The texts of LR value and rate, true range, minimum, maximum, volatility and largest position."""
    known = weeks_before(market, code, day, WEEKS + 1)  # The first one may have only its close.
    weeks = known[-WEEKS:]
    if len(weeks) < FEWEST_WEEKS:
        return [EMPTY] * 7
    intercept, slope = regression([close for close, _, _ in weeks])
    now = len(weeks) - 1 + Decimal((day - friday_before(day)).days) / 7
    value, half_a_year_ago = intercept + slope * now, intercept + slope * (now - 26)
    rate = annualise((value - half_a_year_ago) / half_a_year_ago * 100, Decimal("0.5"))
    ranges = [true_range(week, before) for week, before in zip(known, [None, *known])][-WEEKS:]
    mean = sum(ranges) / len(ranges)
    low, high = max(value - RANGES_FROM_VALUE * mean, Decimal(0)), value + RANGES_FROM_VALUE * mean
    volatility = sum(ranges[-2:]) / 2 / value * 100
    today = market.close(code, day)
    position = capital * RISK / ((today - low) / today) if today > low else None
    return [price(value), percent(rate), price(mean), price(low), price(high), percent(volatility), money(position)]


def moving_average(market, code, today, period):
    def weekdays_before(day):
        while True:
            day -= timedelta(1)
            if day.weekday() < 5:
                yield market.close(code, day)

    closes = weekdays_before(today)
    recent = [next(closes) for _ in range(period)]
    seed = [next(closes) for _ in range(period)]
    if None in recent + seed:
        raise Refused(f"no average of {period} days on {today}")
    value, weight = sum(seed) / period, Decimal(2) / (period + 1)
    for close in reversed(recent):
        value = (close - value) * weight + value
    return value


# ---- performance

def annualise(gain, years):
    if gain is None:
        return None
    factor = gain / 100 + 1
    if factor < 0:
        return None
    return (factor ** (1 / Decimal(years)) - 1) * 100 if factor else Decimal(-100)


def gain_of(now, then, flow=Decimal(0)):
    return None if zero(then) else (now - then - flow) / then * 100


class Recorded(Portfolio):
    """A portfolio with a complete capital record."""

    def __init__(self, market):
        super().__init__()
        self.market = market
        self.prices = market.closes
        self.last = LAST_DAY

    def record_days(self):
        for stock in self.held + self.sold:
            self.market.load(stock.code)
        expected_sequences.TODAY = self.last
        self.update()
        if self.factors:
            raise Refused("answers that nobody asked for")
        self.dates = sorted(self.days)
        self.flows = [Decimal(0), *accumulate(self.days[day].injected for day in self.dates)]
        self.capitals = {day: self.capital(day) for day in self.dates}

    def flow(self, first, last):
        return self.flows[bisect_right(self.dates, last)] - self.flows[bisect_right(self.dates, first)]

    def brokerage(self, first, last):
        def spent(event, day, field):
            return event.num(field) if first <= day <= last else Decimal(0)

        bought = sum(spent(p, p.buy_date, "brokerage") for stock in self.held for p in stock.events)
        return bought + sum(spent(s, s.buy_date, "buy_brokerage") + spent(s, s.sell_date, "sell_brokerage")
                            for stock in self.sold for s in stock.events)


class Table:
    """The portfolios of a table and the financial year of its owner."""

    def __init__(self, market, portfolios, year_starts_in):
        self.market = market
        self.portfolios = portfolios
        self.year_starts_in = year_starts_in  # month

    @property
    def index(self):
        return self.portfolios[0].index if len(self.portfolios) == 1 else ""

    def capital(self, day):
        return sum((p.capitals[day] for p in self.portfolios if day in p.capitals), Decimal(0))

    def is_recorded(self, day):
        return any(day in p.capitals for p in self.portfolios)

    def gain(self, then, now):
        both = [p for p in self.portfolios if then in p.capitals and now in p.capitals]
        if not both:
            return None
        return gain_of(sum(p.capitals[now] for p in both), sum(p.capitals[then] for p in both),
                       sum(p.flow(then, now) for p in both))

    def index_gain(self, then, now):
        if not self.index:
            return None
        before, after = self.market.close(self.index, then), self.market.close(self.index, now)
        return None if before is None or after is None else gain_of(after, before)

    def rows(self, today):
        """(start, end) of each month's row, newest first."""
        end = today
        while self.is_recorded(min(month_end(end), today)):
            start = month_end(end, 1)
            yield start, min(month_end(end), today)
            end = start

    def months_of_year(self, end):
        first, month = self.year_starts_in, end.month
        return 13 - (first - month) if month < first else month - first + 1

    def both_gains(self, end, months):
        then = month_end(end, months)
        return [percent(self.gain(then, end)), percent(self.index_gain(then, end))]

    def both_annualised(self, end, years):
        then = month_end(end, 12 * years)
        of_index = self.index_gain(then, end) if self.is_recorded(then) else None
        return [percent(annualise(self.gain(then, end), years)), percent(annualise(of_index, years))]

    def brokerage_percent(self, start, end):
        capital = self.capital(start)
        if capital == 0:
            return EMPTY
        return percent(sum(p.brokerage(start, end) for p in self.portfolios) / capital * 100)

    def row(self, start, end):
        """The texts of a row: capital, index, brokerage, external flow, then each gain followed by the index's."""
        flow = sum(p.flow(start, end) for p in self.portfolios)
        texts = [money(self.capital(end)), money(self.market.close(self.index, end) if self.index else None),
                 self.brokerage_percent(start, end), EMPTY if zero(flow) else money(flow)]
        for months in SPANS:
            texts += self.both_gains(end, months)
        texts += self.both_annualised(end, 3) + self.both_annualised(end, 5)
        texts += self.both_gains(end, self.months_of_year(end)) + self.both_gains(end, end.month)
        return texts

    def daily_factor(self, day):
        """The growth factor since the previous day without deposits and withdrawals; None from zero."""
        before = day - timedelta(1)
        both = [p for p in self.portfolios if before in p.capitals and day in p.capitals]
        capital = sum(p.capitals[before] for p in both)
        if zero(capital):
            return None
        factor = 1 + (sum(p.capitals[day] - p.flow(before, day) for p in both) - capital) / capital
        return factor if factor > 0 else None

    def growth(self, first, last):
        """Capital on the last day, the first day's capital grown by the daily gains only, and the index's."""
        start, grown, day = first, self.capital(first), first
        while day < last:
            day += timedelta(1)
            factor = self.daily_factor(day)
            if factor is None:
                start, grown = day, self.capital(day)
            else:
                grown *= factor
        scaled = None
        if self.index:
            scaled = self.capital(start) * self.market.close(self.index, last) / self.market.close(self.index, start)
        return [money(self.capital(last)), money(grown), money(scaled)]

    def gains_on(self, today):
        """Daily and weekly gain of the portfolio and of its index, zero if there is none."""
        (_,) = self.portfolios
        yesterday, friday = today - timedelta(1), today - timedelta(today.weekday() + 3)
        return [percent(gain(then, today) or Decimal(0)) for gain in (self.gain, self.index_gain)
                for then in (yesterday, friday)]

    def averages(self, today, periods):
        return [price(moving_average(self.market, self.index, today, int(period))) for period in periods]


# ---- files

class Reader:
    """Answers the queries of a file line by line."""

    def __init__(self, market):
        self.market = market
        self.portfolios = {}
        self.portfolio = self.table = None

    def answer(self, words):
        word, *a = words
        if word in QUESTIONS:
            return " ".join(QUESTIONS[word](self, *a))
        if word == "last-day":
            self.portfolio.last = read_day(a[0])
        elif word == "portfolios":
            self.table = Table(self.market, [self.portfolios[name] for name in a], 1)
        elif word == "financial-year":
            self.asked().year_starts_in = int(a[0].split("/")[1])
        elif self.table is None:
            self.portfolio.run(word, a)
        else:
            raise Refused("a change behind a question")
        return None

    def begin(self, title):
        self.portfolio = self.portfolios[title] = Recorded(self.market)
        self.table = None

    def asked(self):
        if self.table is None:
            self.portfolio.record_days()
            self.table = Table(self.market, [self.portfolio], 1)
        return self.table

    def indicators(self, code, day, capital):
        return indicators(self.market, code, read_day(day), Decimal(capital))

    def rows(self, today):
        rows = list(self.asked().rows(read_day(today)))
        return [str(len(rows)), day_text(rows[-1][1])]

    def month(self, today, end):
        table = self.asked()
        start = next(s for s, e in table.rows(read_day(today)) if e == read_day(end))
        return [day_text(start), *table.row(start, read_day(end))]

    def gain(self, then, now):
        days = read_day(then), read_day(now)
        return [percent(self.asked().gain(*days)), percent(self.asked().index_gain(*days))]

    def growth(self, first, last):
        return self.asked().growth(read_day(first), read_day(last))

    def today(self, day):
        return self.asked().gains_on(read_day(day))

    def averages(self, day, *periods):
        return self.asked().averages(read_day(day), periods)


QUESTIONS = {"indicators": Reader.indicators, "rows": Reader.rows, "month": Reader.month, "gain": Reader.gain,
             "growth": Reader.growth, "today": Reader.today, "averages": Reader.averages}


def expected(lines, market):
    """The file's lines with the model's figures in them."""
    result, reader = [], Reader(market)
    for number, line in enumerate(lines, 1):
        text = line.partition(" -> ")[0]
        if not text or text.startswith("#"):
            result.append(line)
            continue
        if text.startswith("case "):
            reader.begin(text.removeprefix("case "))
            result.append(text)
            continue
        try:
            answer = reader.answer(words_of(text))
        except (Refused, Failure, ArithmeticError, LookupError, ValueError, AttributeError, StopIteration) as fault:
            raise Refused(f"line {number}: {type(fault).__name__} {fault}")
        result.append(text if answer is None else f"{text} -> {answer}")
    return result


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    market, differs, figures = Market(sys.argv[1]), False, 0
    for path in sorted((Path(__file__).parent / "data" / "performance").glob("*.txt")):
        lines = path.read_text(encoding="utf-8").splitlines()
        try:
            wanted = expected(lines, market)
        except Refused as fault:
            print(f"{path.name}: {fault}")
            differs = True
            continue
        figures += sum(len(line.partition(" -> ")[2].split()) for line in wanted if not line.startswith("#"))
        if wanted == lines:
            continue
        if "--write" in sys.argv:
            path.write_text("\n".join(wanted) + "\n", encoding="utf-8")
            print(f"{path.name}: written")
        else:
            print(f"{path.name}: differs")
            differs = True
    print(f"{figures} figures")
    return 1 if differs else 0


if __name__ == "__main__":
    sys.exit(main())
