#!/usr/bin/env python3
"""Computes the expected results of the sequences in data/sequences/*.txt with an independent model.

The model implements the rules of the program's books in decimal arithmetic with plain lists, without code of the
program. It computes the texts after "->" and the block below "document".

    expected_sequences.py            checks the files against the model; the exit code is 1 if they differ
    expected_sequences.py --write    writes the model's figures into the files

A result exactly between two roundings is rejected: binary fractions may round either way, so such a sequence would
test nothing. Prices must come before the first "update" of a case, so that none replaces a recorded price.
"""
import sys
from datetime import date, timedelta
from decimal import Decimal, ROUND_HALF_UP, getcontext
from fractions import Fraction
from math import prod
from pathlib import Path

getcontext().prec = 60
TODAY = date(2026, 3, 3)
CREDITS, EXTERNAL = (1, 3, 4), (4, 5)
SPLIT_RATIO = Decimal(2)
BROKEN_RATIOS, A_TENTH_MORE = [Decimal(ratio) for ratio in ("1.5", "2.5")], Decimal("1.1")


class Refused(Exception):
    """A sequence that is unsuitable as a test."""


class Failure(Exception):
    """An exception of the program."""


def fixed(value, places):
    scaled = abs(value).scaleb(places)
    if scaled % 1 == Decimal("0.5"):
        raise Refused(f"{value} lies between two roundings at {places} places")
    text = str(value.quantize(Decimal(1).scaleb(-places), ROUND_HALF_UP))
    return text.lstrip("-") if value == 0 else text


def zero(value, places=4):
    return Decimal(fixed(value, places)) == 0


def same(a, b, places):
    return fixed(a, places) == fixed(b, places)


def money(value):
    return fixed(value, 2)


def recorded(value):
    """Formats shares in units of their purchase, and prices, with two to six decimals as needed."""
    text = fixed(value, 6)
    while text.endswith("0") and len(text.partition(".")[2]) > 2:
        text = text[:-1]
    return text


def day_text(day):
    return f"{day.day}/{day.month}/{day.year}"


def read_day(text):
    day, month, year = map(int, text.split("/"))
    return date(year, month, day)


def escape(text):
    for plain, escaped in (("&", "&amp;"), ('"', "&quot;"), ("'", "&apos;"), ("<", "&lt;"), (">", "&gt;")):
        text = text.replace(plain, escaped)
    return text


def leaf(tag, text):
    return f"<{tag}>{escape(text)}</{tag}>" if text else f"<{tag}/>"


class Event:
    """A record. Numbers are stored as the texts of the document."""

    def __init__(self, **fields):
        self.__dict__.update(fields)

    def num(self, field):
        return Decimal(getattr(self, field) or "0")


class Portfolio:
    def __init__(self):
        self.held = []  # Each is (code, parcels, limits).
        self.sold = []
        self.dividends = []
        self.cash = []
        self.index = ""
        self.prices = {}
        self.factors = []
        self.days = {}
        self.updated = False
        self.answers = []

    # ---- the document

    def document(self):
        lines = ["<SharePortfolio><String>Trading</String>"]

        def adjustments(event):
            return "".join("<SplitAdjustment>" + leaf("Date", day_text(a.start)) + leaf("Constant", str(a.factor)) +
                           "</SplitAdjustment>" for a in event.adjustments)

        def constants(*texts):
            return "".join(leaf("Constant", text) for text in texts)

        lines.append("<HeldShares>" if self.held else "<HeldShares/>")
        for stock in self.held:
            lines.append("<HeldShare>" + leaf("String", stock.code))
            for p in stock.events:
                lines.append("<BuyEvent>" + leaf("Date", day_text(p.buy_date)) +
                             constants(p.number, p.buy_price, p.brokerage) + leaf("String", p.comment) +
                             adjustments(p) + "</BuyEvent>")
            lines[-1] += constants(stock.low, stock.high, stock.limit) + "</HeldShare>"
        if self.held:
            lines[-1] += "</HeldShares>"
        lines.append("<SoldShares>" if self.sold else "<SoldShares/>")
        for stock in self.sold:
            lines.append("<SoldShare>" + leaf("String", stock.code))
            for s in stock.events:
                bought = f' BuyComment="{escape(s.buy_comment)}"' if s.buy_comment else ""
                lines.append(f"<SellEvent{bought}>" + leaf("Date", day_text(s.buy_date)) + leaf("Date", day_text(s.sell_date)) +
                             constants(s.number, s.buy_price, s.sell_price, s.buy_brokerage, s.sell_brokerage) +
                             leaf("String", s.comment) + adjustments(s) + "</SellEvent>")
            lines[-1] += "</SoldShare>"
        if self.sold:
            lines[-1] += "</SoldShares>"
        lines.append("<Dividends>" if self.dividends else "<Dividends/>")
        for d in self.dividends:
            lines.append("<DividendEvent>" + leaf("String", d.code) + leaf("Date", day_text(d.day)) +
                         constants(d.number, d.rate, d.franked, d.shares, d.price) + leaf("String", d.country) +
                         constants(d.tax) + "</DividendEvent>")
        if self.dividends:
            lines[-1] += "</Dividends>"
        lines.append("<CashReserve>" if self.cash else "<CashReserve/>")
        for c in self.cash:
            lines.append("<CashEvent>" + leaf("Date", day_text(c.day)) + constants(c.value, str(c.type)) +
                         leaf("String", c.description) + "</CashEvent>")
        if self.cash:
            lines[-1] += "</CashReserve>"
        lines[-1] += leaf("String", self.index) + "</SharePortfolio>"
        return lines

    # ---- helpers

    def changed(self, *days):
        first = min(days)
        self.days = {day: record for day, record in self.days.items() if day < first}

    def stock(self, stocks, code):
        return next((s for s in stocks if s.code == code), None)

    def add_cash(self, day, value, kind, description):
        self.cash.append(Event(day=day, value=money(value), type=kind, description=description))
        self.changed(day)

    def find_cash(self, day, value, kind, part):
        return next((c for c in self.cash if c.day == day and c.value == value and c.type == kind
                     and part in c.description), None)

    def take_event(self, stocks, stock, event):
        stock.events = [e for e in stock.events if e is not event]
        if not stock.events:
            stocks[:] = [s for s in stocks if s is not stock]

    def adjusted(self, event, day):
        number, price = event.num("number"), event.num("buy_price")
        sold = getattr(event, "sell_date", None)
        if event.buy_date < day and (sold is None or sold > day):
            for a in event.adjustments:
                if a.start <= day:
                    size = Decimal(abs(a.factor))
                    number, price = (number * size, price / size) if a.factor > 0 else (number / size, price * size)
        return number, price

    # ---- splits between a purchase and a day

    def shares_of_one(self, event, day):
        """The number of shares on the day for one share of the purchase."""
        if event.buy_date >= day:
            return Fraction(1)
        ratios = [Fraction(a.factor) if a.factor > 0 else Fraction(1, -a.factor) for a in event.adjustments
                  if a.start <= day]
        return prod(ratios, start=Fraction(1))

    @staticmethod
    def times(value, ratio):
        return value * ratio.numerator / ratio.denominator

    def as_recorded(self, event, day, number):
        ratio = self.shares_of_one(event, day)
        return fixed(number, 2) if ratio == 1 else recorded(self.times(number, 1 / ratio))

    def as_sold(self, sale):
        """Number and buying price as of the day of sale. The cash entry shows in which units the number is."""
        ratio = self.shares_of_one(sale, sale.sell_date)
        as_it_stands = sale.num("number"), sale.num("buy_price")
        if ratio == 1:
            return as_it_stands
        number = self.times(sale.num("number"), ratio)
        for places in range(2, 6):
            typed = number.quantize(Decimal(1).scaleb(-places), ROUND_HALF_UP)
            if recorded(self.times(typed, 1 / ratio)) == sale.number:
                number = typed
                break
        found = lambda n: self.find_cash(sale.sell_date, self.proceeds(sale, n), 1, sale.code)
        if not found(number) and found(sale.num("number")):
            return as_it_stands
        return number, self.times(sale.num("buy_price"), 1 / ratio)

    @staticmethod
    def cost(sale):
        return money(sale.num("number") * sale.num("buy_price") + sale.num("buy_brokerage"))

    @staticmethod
    def proceeds(sale, number):
        return money(number * sale.num("sell_price") - sale.num("sell_brokerage"))

    # ---- purchases and sales

    def buy(self, code, day, number, price, brokerage, comment):
        market = lambda c: c.partition(".")[2]
        if self.held and market(self.held[0].code) != market(code) and not self.answers.pop(0):
            return "false"
        parcel = self.add_parcel(code, day, number, price, brokerage, comment)
        self.add_cash(day, number * price + parcel.num("brokerage"), 2,
                      f"BUY {fixed(number, 2)} of {code} @ {fixed(price, 4)}")
        return "true"

    def add_parcel(self, code, day, number, price, brokerage, comment):
        stock = self.stock(self.held, code)
        if not stock:
            stock = Event(code=code, events=[], low="", high="", limit="")
            self.held.append(stock)
        stock.events.append(Event(buy_date=day, number=fixed(number, 2), buy_price=fixed(price, 4),
                                  brokerage=money(brokerage), comment=comment, adjustments=[]))
        self.changed(day)
        return stock.events[-1]

    def sell(self, code, day, number, price, brokerage, order, comment):
        stock = self.stock(self.held, code)
        if not stock:
            raise Failure("SharePortfolioUser::sellShares - cant find held shares to sell")
        parcels = list(stock.events)
        if order == "lifo":
            parcels.reverse()
        sold = Decimal(0)
        for parcel in parcels:
            if sold >= number or same(sold, number, 4):
                break
            available = self.adjusted(parcel, day)[0]
            wanted = number - sold
            part = self.as_recorded(parcel, day, wanted)
            if wanted < available and not zero(available - wanted, 2):
                taken, buy_brokerage, buy_comment = wanted, "0.00", ""
                parcel.number = recorded(parcel.num("number") - Decimal(part))
            else:
                taken, buy_brokerage, part = available, parcel.brokerage, parcel.number
                buy_comment = parcel.comment
                self.take_event(self.held, stock, parcel)
            target = self.stock(self.sold, code)
            if not target:
                target = Event(code=code, events=[])
                self.sold.append(target)
            splits = [Event(start=a.start, factor=a.factor) for a in parcel.adjustments if a.start <= day]
            target.events.append(Event(code=code, buy_date=parcel.buy_date, sell_date=day, number=part,
                                       buy_price=parcel.buy_price, sell_price=fixed(price, 4),
                                       buy_brokerage=buy_brokerage, sell_brokerage=money(brokerage),
                                       comment=comment, buy_comment=buy_comment, adjustments=splits))
            self.add_cash(day, taken * price - brokerage, 1, f"SELL {fixed(taken, 2)} of {code} @ {fixed(price, 4)}")
            brokerage = Decimal(0)
            sold += taken

    def remove_held(self, code):
        stock = self.stock(self.held, code)
        if stock:
            self.held.remove(stock)
            self.changed(*(p.buy_date for p in stock.events))

    def remove_sold(self, code):
        stock = self.stock(self.sold, code)
        if stock:
            self.sold.remove(stock)
            self.changed(*(min(s.buy_date, s.sell_date) for s in stock.events))

    def delete_buy(self, code, day, number):
        stock = self.stock(self.held, code)
        parcel = stock and next((p for p in stock.events if p.buy_date == day
                                 and same(self.adjusted(p, TODAY)[0], number, 4)), None)
        if not parcel:
            return "false"
        cost = parcel.num("number") * parcel.num("buy_price") + parcel.num("brokerage")
        entry = self.find_cash(day, money(cost), 2, code)
        if entry:
            self.cash.remove(entry)
        self.take_event(self.held, stock, parcel)
        self.changed(day)
        return "true" if entry else "false"

    def find_sale(self, code, day, number):
        stock = self.stock(self.sold, code)
        return stock, stock and next((s for s in stock.events if s.sell_date == day
                                      and same(self.as_sold(s)[0], number, 4)), None)

    def undo_sell(self, code, day, number):
        stock, sale = self.find_sale(code, day, number)
        if not sale:
            return "false"
        entry = self.find_cash(day, self.proceeds(sale, self.as_sold(sale)[0]), 1, code)
        splits = lambda e: sorted((a.start, a.factor) for a in e.adjustments if a.start <= day)
        held = self.stock(self.held, code)
        rest = None
        if held and not self.find_cash(sale.buy_date, self.cost(sale), 2, code):
            rest = next((p for p in held.events if p.buy_date == sale.buy_date and p.buy_price == sale.buy_price
                         and splits(p) == splits(sale)), None)
        if rest:
            rest.number = recorded(rest.num("number") + sale.num("number"))
            rest.brokerage = money(rest.num("brokerage") + sale.num("buy_brokerage"))
            rest.comment = rest.comment or sale.buy_comment
        else:
            back = self.add_parcel(code, sale.buy_date, Decimal(0), Decimal(0), Decimal(0), "")
            back.number, back.buy_price, back.brokerage = sale.number, sale.buy_price, sale.buy_brokerage
            back.comment = sale.buy_comment
            back.adjustments = [Event(start=a.start, factor=a.factor) for a in sale.adjustments]
            for other in [e for s in self.held + self.sold if s.code == code for e in s.events]:
                known = {a.start for a in back.adjustments}
                back.adjustments += [Event(start=a.start, factor=a.factor) for a in other.adjustments
                                     if a.start > day and a.start not in known]
            held = self.stock(self.held, code)
            held.events.remove(back)
            place = len(held.events)
            while place > 0 and held.events[place - 1].buy_date > back.buy_date:
                place -= 1
            held.events.insert(place, back)
        self.cash = [c for c in self.cash if c is not entry]
        self.take_event(self.sold, stock, sale)
        self.changed(day)
        return "true" if entry else "false"

    def delete_sell(self, code, day, number):
        stock, sale = self.find_sale(code, day, number)
        if not sale:
            return "false"
        proceeds = self.proceeds(sale, self.as_sold(sale)[0])
        entries = [self.find_cash(sale.sell_date, proceeds, 1, code),
                   self.find_cash(sale.buy_date, self.cost(sale), 2, code)]
        self.cash = [c for c in self.cash if not any(c is e for e in entries)]
        self.take_event(self.sold, stock, sale)
        self.changed(sale.buy_date, sale.sell_date)
        return "true" if all(entries) else "false"

    def move_cash(self, entry, day, value, description):
        if entry:
            entry.day, entry.value, entry.description = day, money(value), description
        return entry is not None

    def edit_buy(self, code, place, day, number, price, brokerage, comment, old_cost, old_day):
        parcel = self.stock(self.held, code).events[int(place)]
        was = parcel.buy_date
        if not same(number, parcel.num("number"), 6):
            split = any(abs(a.factor) != 1 for a in parcel.adjustments)
            parcel.number = recorded(number) if split else fixed(number, 2)
        if day != was:
            self.take_splits(parcel, code, day, date.max)
        parcel.buy_date, parcel.buy_price = day, fixed(price, 4)
        parcel.brokerage, parcel.comment = money(brokerage), comment or parcel.comment
        entry = self.find_cash(old_day, money(old_cost), 2, code) if old_cost > 0 else None
        found = self.move_cash(entry, day, number * price + parcel.num("brokerage"),
                               f"BUY {fixed(number, 2)} of {code} @ {fixed(price, 4)}")
        self.changed(day, old_day, was)
        return "true" if found else "false"

    def edit_sell(self, code, place, buy_day, sell_day, number, buy_price, sell_price, buy_brokerage, sell_brokerage,
                  comment):
        sale = self.stock(self.sold, code).events[int(place)]
        before = self.as_sold(sale)
        ratio_before = self.shares_of_one(sale, sale.sell_date)
        as_it_stands = ratio_before != 1 and before == (sale.num("number"), sale.num("buy_price"))
        cost, proceeds = self.cost(sale), self.proceeds(sale, before[0])
        days = [sale.buy_date, sale.sell_date, buy_day, sell_day]
        positive = lambda text: Decimal(text) > 0
        bought = self.find_cash(sale.buy_date, cost, 2, code) if positive(cost) else None
        sale.buy_date, old_sell_day, sale.sell_date = buy_day, sale.sell_date, sell_day
        sale.sell_price = fixed(sell_price, 4)
        if (days[0], days[1]) != (buy_day, sell_day):
            self.take_splits(sale, code, buy_day, sell_day)
        ratio = Fraction(1) if as_it_stands else self.shares_of_one(sale, sell_day)
        same_terms = as_it_stands or ratio == ratio_before
        if not (same_terms and same(number, before[0], 6)):
            sale.number = fixed(number, 2) if ratio == 1 else recorded(self.times(number, 1 / ratio))
        if not (same_terms and same(buy_price, before[1], 4)):
            sale.buy_price = fixed(self.times(buy_price, ratio), 4)
        sale.buy_brokerage, sale.sell_brokerage = money(buy_brokerage), money(sell_brokerage)
        sale.comment = comment or sale.comment
        now_sold = sale.num("number") if ratio == 1 else number
        new_cost, new_proceeds = self.cost(sale), self.proceeds(sale, now_sold)
        first = self.move_cash(bought, buy_day, Decimal(new_cost),
                               f"BUY {fixed(sale.num('number'), 2)} of {code} @ {sale.buy_price}")
        received = self.find_cash(old_sell_day, proceeds, 1, code) if positive(proceeds) else None
        second = self.move_cash(received, sell_day, Decimal(new_proceeds),
                                f"SELL {fixed(now_sold, 2)} of {code} @ {sale.sell_price}")
        self.changed(*days)
        return "true" if first and second else "false"

    # ---- dividends and cash

    @staticmethod
    def dividend_words(code, rate, number):
        return f"DIVIDEND {code} @ {fixed(rate, 6)} x {fixed(number, 2)}"

    def store_dividend(self, event, code, day, number, rate, franked, shares, price, country, tax):
        event.code, event.day, event.number, event.rate = code, day, fixed(number, 2), fixed(rate, 6)
        event.franked, event.shares, event.price = str(int(franked)), fixed(shares, 2), fixed(price, 4)
        event.country = country or event.country
        event.tax = money(tax) if not zero(tax, 2) else event.tax

    def pay_dividend(self, code, day, number, rate, shares, price):
        words = self.dividend_words(code, rate, number)
        if zero(shares):
            self.add_cash(day, number * rate, 1, words)
        else:
            self.add_parcel(code, day, shares, price, Decimal(0), words)

    def dividend(self, code, day, number, rate, franked, shares, price, country, tax):
        event = Event(country="", tax="")
        self.store_dividend(event, code, day, number, rate, franked, shares, price, country, tax)
        self.dividends.append(event)
        self.pay_dividend(code, day, number, rate, shares, price)

    def edit_dividend(self, place, code, day, number, rate, franked, shares, price, country, tax, old_shares,
                      old_price, old_value, old_day):
        event = self.dividends[int(place)]
        old_code, was = event.code, event.day
        old_words = self.dividend_words(old_code, event.num("rate"), event.num("number"))
        self.store_dividend(event, code, day, number, rate, franked, shares, price, country, tax)
        if old_value > 0:
            link = self.find_cash(old_day, money(old_value), 1, old_words)
            if zero(shares):
                self.move_cash(link, day, number * rate, self.dividend_words(code, rate, number))
            else:
                self.cash = [c for c in self.cash if c is not link]
                self.pay_dividend(code, day, number, rate, shares, price)
        else:
            stock = self.stock(self.held, old_code)
            link = stock and next((p for p in stock.events if p.buy_date == old_day
                                   and same(p.num("number"), old_shares, 4) and same(p.num("buy_price"), old_price, 4)
                                   and zero(p.num("brokerage")) and "DIVIDEND" in p.comment), None)
            if zero(shares) or code != old_code:
                if link:
                    self.take_event(self.held, stock, link)
                self.pay_dividend(code, day, number, rate, shares, price)
            elif link:
                if link.buy_date != day:
                    self.take_splits(link, code, day, date.max)
                link.buy_date, link.number, link.buy_price = day, fixed(shares, 2), fixed(price, 4)
        self.changed(day, old_day, was)
        return "true" if link else "false"

    def delete_dividend(self, place):
        event = self.dividends.pop(int(place))
        if zero(event.num("shares")):
            link = self.find_cash(event.day, money(event.num("number") * event.num("rate")), 1,
                                  f"DIVIDEND {event.code} @ ")
            self.cash = [c for c in self.cash if c is not link]
        else:
            stock = self.stock(self.held, event.code)
            link = stock and next((p for p in stock.events if p.buy_date == event.day
                                   and same(p.num("buy_price"), event.num("price"), 2)
                                   and same(p.num("number"), event.num("shares"), 4)), None)
            if link:
                self.take_event(self.held, stock, link)
        self.changed(event.day)
        return "true" if link else "false"

    def edit_cash(self, place, new_day, old_day, value, description):
        entry = self.cash[int(place)]
        was = entry.day
        self.move_cash(entry, new_day, value, description)
        self.changed(new_day, old_day, was)

    def delete_cash(self, place):
        self.changed(self.cash.pop(int(place)).day)

    # ---- splits

    def spanning(self, code, day):
        held, sold = self.stock(self.held, code), self.stock(self.sold, code)
        return ([p for p in (held.events if held else []) if p.buy_date < day] +
                [s for s in (sold.events if sold else []) if s.buy_date < day < s.sell_date])

    def take_splits(self, event, code, bought, last):
        """The splits of the stock between the two days."""
        event.adjustments = [a for a in event.adjustments if bought < a.start <= last]
        for other in [e for s in self.held + self.sold if s.code == code for e in s.events]:
            known = {a.start for a in event.adjustments}
            event.adjustments += [Event(start=a.start, factor=a.factor) for a in other.adjustments
                                  if bought < a.start <= last and a.start not in known]

    @staticmethod
    def factors_of(answer, reverse):
        """The factors for an answered ratio like "5:2"."""
        if answer == "cancel":
            return [-1 if reverse else 1]
        ratio = Fraction(*map(int, answer.split(":")))
        if ratio == 1:
            return [-1 if reverse else 1]
        ratio = 1 / ratio if reverse else ratio
        up, down = ratio.numerator, ratio.denominator
        return [up] if down == 1 else [-down] if up == 1 else [up, -down]

    def record_split(self, code, day, *factors):
        for event in self.spanning(code, day):
            places = [i for i, a in enumerate(event.adjustments) if a.start == day]
            for place in reversed(places[len(factors):]):
                del event.adjustments[place]
            for i, factor in enumerate(factors):
                if i < len(places):
                    event.adjustments[places[i]].factor = factor
                else:
                    event.adjustments.append(Event(start=day, factor=factor))

    def shares_between(self, code, first, last):
        """Shares on the last day for one on the first, by the splits recorded in any parcel."""
        if last < first:
            return 1 / self.shares_between(code, last, first)
        held, sold = self.stock(self.held, code), self.stock(self.sold, code)
        splits = {}
        for event in (held.events if held else []) + (sold.events if sold else []):
            ratios = {}
            for a in event.adjustments:
                ratio = Decimal(a.factor) if a.factor > 0 else 1 / Decimal(-a.factor)
                ratios[a.start] = ratios.get(a.start, Decimal(1)) * ratio
            for start, ratio in ratios.items():
                if ratio != 1:
                    splits.setdefault(start, ratio)
        shares = Decimal(1)
        for start, ratio in splits.items():
            if first < start <= last:
                shares *= ratio
        return shares

    def price_on(self, code, day):
        """The price of the day, and whether it was given for that day."""
        price = self.prices.get((code, day), Decimal(0))
        given = not zero(price)
        if given:
            return price, given
        earlier = [d for c, d in self.prices if c == code and d < day and not zero(self.prices[c, d])]
        if earlier:
            last = max(earlier)
            price = self.prices[code, last] / self.shares_between(code, last, day)
        else:
            price, best, nearest = Decimal(0), None, day
            held, sold = self.stock(self.held, code), self.stock(self.sold, code)
            offers = [(p.buy_date, p.num("buy_price")) for p in (held.events if held else [])]
            for s in (sold.events if sold else []):
                offers += [(s.buy_date, s.num("buy_price")), (s.sell_date, s.num("sell_price"))]
            for when, offer in offers:
                distance = abs((when - day).days)
                if best is None or distance < best:
                    price, best, nearest = offer, distance, when
            price /= self.shares_between(code, nearest, day)
        if zero(price):
            raise Failure(f"SharePortfolioUser::sharePriceFor - could not get price for {code} at "
                          f"{day.day:02}/{day.month:02}/{day.year}")
        return price, given

    @staticmethod
    def jump(yesterday, today):
        """What the closes suggest: "split", "merge" or nothing."""
        fall, rise = yesterday / today, today / yesterday
        for word, jump, broken in (("split", fall, BROKEN_RATIOS), ("merge", rise, [])):
            ratios = [r for r in (jump.quantize(Decimal(1), ROUND_HALF_UP), *broken) if r > 1]
            if jump > 1 and (jump >= SPLIT_RATIO or any(max(jump / r, r / jump) <= A_TENTH_MORE for r in ratios)):
                return word
        return None

    def checked_price(self, code, day):
        (today, given), (yesterday, given_before) = self.price_on(code, day), self.price_on(code, day - timedelta(1))
        word = self.jump(yesterday, today) if given and given_before else None
        if word and not all(any(a.start == day for a in e.adjustments) for e in self.spanning(code, day)):
            reverse = word == "merge"
            if not self.factors:
                raise Refused(f"a split of {code} would be asked for on {day}")
            self.record_split(code, day, *self.factors_of(self.factors.pop(0), reverse))
        return today

    # ---- the capital record

    def held_on(self, day):
        for stock in self.held:
            for p in stock.events:
                if p.buy_date <= day:
                    yield stock.code, p
        for stock in self.sold:
            for s in stock.events:
                if s.buy_date <= day < s.sell_date:
                    yield stock.code, s

    def signed(self, entry):
        return entry.num("value") if entry.type in CREDITS else -entry.num("value")

    def update(self):
        self.updated = True
        if TODAY in self.days:
            return
        starts = [p.buy_date for s in self.held + self.sold for p in s.events] + [c.day for c in self.cash]
        day = max(self.days) + timedelta(1) if self.days else min(starts, default=TODAY)
        while day <= TODAY:
            self.days[day] = self.compute(day)
            day += timedelta(1)

    def compute(self, day):
        cash = sum((self.signed(c) for c in self.cash if c.day <= day), Decimal(0))
        injected = sum((self.signed(c) for c in self.cash if c.day == day and c.type in EXTERNAL), Decimal(0))
        shares = {}
        for code, _ in list(self.held_on(day)):
            if code not in shares:
                shares[code] = [None, recorded(self.checked_price(code, day))]
        divided = {}
        for code, event in self.held_on(day):
            number = self.adjusted(event, day)[0]
            before = shares[code][0] or "0.00"
            # The parts of a divided purchase are added before rounding.
            if len(recorded(event.num("number")).partition(".")[2]) > 2:
                divided[code] = divided.get(code, Decimal(0)) + number
                shares[code][0] = before
            else:
                shares[code][0] = fixed(Decimal(before) + number, 2)
        for code, number in divided.items():
            shares[code][0] = fixed(Decimal(shares[code][0]) + number, 2)
        return Event(cash=money(cash), injected=Decimal(0) if zero(injected, 2) else injected, shares=shares)

    def record(self, day):
        if day not in self.days:
            raise Failure(f"SharePortfolioCapitalRecordUser::dayCapFor - doesn't have one for "
                          f"{day.day:02}/{day.month:02}/{day.year}")
        return self.days[day]

    def capital(self, day):
        record = self.record(day)
        return Decimal(record.cash) + sum(Decimal(n) * Decimal(p) for n, p in record.shares.values())

    def flow(self, first, last):
        return sum((r.injected for d, r in self.days.items() if first < d <= last), Decimal(0))

    def gain_since(self, then):
        if then not in self.days or TODAY not in self.days or zero(self.capital(then)):
            return Decimal(0)
        return (self.capital(TODAY) - self.capital(then) - self.flow(then, TODAY)) / self.capital(then) * 100

    # ---- one line of a sequence

    def run(self, word, a):
        n, d = Decimal, read_day
        figure = lambda value: fixed(value, 6) if (value.scaleb(6) % 1 != Decimal("0.5")) else str(value)
        if word == "price":
            if self.updated:
                raise Refused("a price behind an update")
            first = d(a[1])
            last = d(a[2]) if len(a) == 4 else first
            while first <= last:
                self.prices[a[0], first] = n(a[-1])
                first += timedelta(1)
        elif word == "index":
            self.index = a[0]
        elif word == "answer":
            self.answers.append(a[0] == "yes")
        elif word == "answer-split":
            self.factors.append(a[0])
        elif word == "buy":
            return self.buy(a[0], d(a[1]), n(a[2]), n(a[3]), n(a[4]), a[5])
        elif word == "add-parcel":
            self.add_parcel(a[0], d(a[1]), n(a[2]), n(a[3]), n(a[4]), a[5])
        elif word == "sell":
            self.sell(a[0], d(a[1]), n(a[2]), n(a[3]), n(a[4]), a[5], a[6])
        elif word == "remove-held":
            self.remove_held(a[0])
        elif word == "remove-sold":
            self.remove_sold(a[0])
        elif word == "delete-buy":
            return self.delete_buy(a[0], d(a[1]), n(a[2]))
        elif word == "delete-sell":
            return self.delete_sell(a[0], d(a[1]), n(a[2]))
        elif word == "undo-sell":
            return self.undo_sell(a[0], d(a[1]), n(a[2]))
        elif word == "edit-buy":
            return self.edit_buy(a[0], a[1], d(a[2]), n(a[3]), n(a[4]), n(a[5]), a[6], n(a[7]), d(a[8]))
        elif word == "edit-sell":
            return self.edit_sell(a[0], a[1], d(a[2]), d(a[3]), *map(n, a[4:9]), a[9])
        elif word == "min-max":
            stock = self.stock(self.held, a[0])
            stock.low, stock.high = fixed(n(a[1]), 4), fixed(n(a[2]), 4)
        elif word == "portfolio-max":
            self.stock(self.held, a[0]).limit = money(n(a[1]))
        elif word in ("credit", "debit"):
            self.add_cash(d(a[0]), n(a[1]), int(a[2]), a[3])
        elif word == "edit-cash":
            self.edit_cash(a[0], d(a[1]), d(a[2]), n(a[3]), a[4])
        elif word == "delete-cash":
            self.delete_cash(a[0])
        elif word == "dividend":
            self.dividend(a[0], d(a[1]), *map(n, a[2:7]), a[7], n(a[8]))
        elif word == "edit-dividend":
            return self.edit_dividend(a[0], a[1], d(a[2]), *map(n, a[3:8]), a[8], *map(n, a[9:13]), d(a[13]))
        elif word == "delete-dividend":
            return self.delete_dividend(a[0])
        elif word == "split":
            self.record_split(a[0], d(a[1]), int(a[2]))
            self.changed(d(a[1]))
        elif word == "merge":
            self.record_split(a[0], d(a[1]), -int(a[2]))
            self.changed(d(a[1]))
        elif word == "update":
            self.update()
        elif word == "held":
            stock = self.stock(self.held, a[0])
            return figure(sum((self.adjusted(p, TODAY)[0] for p in stock.events), Decimal(0)) if stock else Decimal(0))
        elif word == "start":
            starts = [p.buy_date for s in self.held + self.sold for p in s.events] + [c.day for c in self.cash]
            return day_text(min(starts, default=TODAY))
        elif word == "recorded-price":
            keep, self.prices = self.prices, {}
            try:
                return figure(self.price_on(a[0], d(a[1]))[0])
            except Failure:
                return "0.000000"
            finally:
                self.prices = keep
        elif word == "share-price":
            return figure(self.price_on(a[0], d(a[1]))[0])
        elif word == "is-adjusted":
            return "true" if all(e.adjustments for e in self.spanning(a[0], d(a[1]))) else "false"
        elif word == "last-day":
            return day_text(max(self.days)) if self.days else "none"
        elif word == "first-day":
            return day_text(min(self.days)) if self.days else "none"
        elif word == "day":
            record = self.record(d(a[0]))
            text = f"cash {record.cash}"
            if record.injected:
                text += f" injected {money(record.injected)}"
            return text + "".join(f"; {c} {num} x {p}" for c, (num, p) in record.shares.items())
        elif word == "cash-on":
            return figure(Decimal(self.record(d(a[0])).cash))
        elif word == "cash-today":
            return figure(Decimal(self.days[TODAY].cash) if TODAY in self.days else Decimal(0))
        elif word == "shares-today":
            return figure(self.capital(TODAY) - Decimal(self.days[TODAY].cash) if TODAY in self.days else Decimal(0))
        elif word == "capital":
            return figure(self.capital(d(a[0])))
        elif word == "capital-today":
            return figure(self.capital(TODAY))
        elif word == "flow":
            return figure(self.flow(d(a[0]), d(a[1])))
        elif word == "daily-gain":
            return figure(self.gain_since(TODAY - timedelta(1)))
        elif word == "weekly-gain":
            return figure(self.gain_since(TODAY - timedelta(TODAY.weekday() + 3)))
        else:
            raise Refused(f"what is {word}?")
        return None


def words_of(line):
    words, rest = [], line.strip()
    while rest:
        if rest[0] == '"':
            word, _, rest = rest[1:].partition('"')
        else:
            word, _, rest = rest.partition(" ")
        words.append(word)
        rest = rest.strip()
    return words


def expected(lines):
    """The file's lines with the model's figures in them."""
    result, portfolio, title = [], None, None
    for number, line in enumerate(lines, 1):
        if line.startswith("  <"):
            continue
        text = line.partition(" -> ")[0]
        if not text or text.startswith("#"):
            result.append(line)
            continue
        words = words_of(text)
        if words[0] == "case":
            if portfolio and (portfolio.answers or portfolio.factors):
                raise Refused(f"{title}: answers that nobody asked for")
            portfolio, title = Portfolio(), text
            result.append(text)
            continue
        if words[0] == "document":
            result.append(text)
            result += ["  " + part for part in portfolio.document()]
            continue
        try:
            answer = portfolio.run(words[0], words[1:])
        except Failure as failure:
            answer = f"throws {failure}"
        except (Refused, ArithmeticError, LookupError, ValueError, AttributeError) as fault:
            raise Refused(f"line {number} ({title}): {type(fault).__name__} {fault}")
        result.append(text if answer is None else f"{text} -> {answer}")
    return result


def main():
    differs, cases = False, 0
    for path in sorted((Path(__file__).parent / "data" / "sequences").glob("*.txt")):
        lines = path.read_text(encoding="utf-8").splitlines()
        try:
            wanted = expected(lines)
        except Refused as fault:
            print(f"{path.name}: {fault}")
            differs = True
            continue
        cases += sum(line.startswith("case ") for line in wanted)
        if wanted == lines:
            continue
        if "--write" in sys.argv:
            path.write_text("\n".join(wanted) + "\n", encoding="utf-8")
            print(f"{path.name}: written")
        else:
            print(f"{path.name}: differs")
            differs = True
    print(f"{cases} sequences")
    return 1 if differs else 0


if __name__ == "__main__":
    sys.exit(main())
