#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes reference.json beside it: all subsets and searches by partial F in exact fractions of the doubles that are
fitted, logarithms and tail probabilities with 60 digits. A second, slow and plain road to the figures; nothing here is
shared with the program.

    reference.py            writes reference.json
    reference.py --check    fails unless it is what it would write
"""

import csv
import json
import random
import sys
from fractions import Fraction
from itertools import combinations
from pathlib import Path

import mpmath

mpmath.mp.dps = 60
HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[2]

# Brownlee 1965: air flow, water temperature, acid concentration; loss of ammonia.
STACKLOSS = [
    [80, 80, 75, 62, 62, 62, 62, 62, 58, 58, 58, 58, 58, 58, 50, 50, 50, 50, 50, 56, 70],
    [27, 27, 25, 24, 22, 23, 24, 24, 23, 18, 18, 17, 18, 19, 18, 18, 19, 19, 20, 20, 20],
    [89, 88, 90, 87, 87, 87, 93, 93, 87, 80, 89, 88, 82, 93, 89, 86, 72, 79, 80, 82, 91],
    [42, 37, 37, 28, 18, 18, 19, 20, 15, 14, 14, 13, 11, 12, 8, 7, 8, 8, 9, 15, 15],
]


def number(value):
    return mpmath.mpf(value.numerator) / value.denominator


def text(value):
    return None if value is None else float(mpmath.nstr(number(value) if isinstance(value, Fraction) else value, 25))


def csv_columns(path):
    rows = list(csv.reader(path.open()))[1:]
    return [[float(row[j]) for row in rows] for j in range(len(rows[0]))]


def solve(rows, n):
    """Eliminates with exact fractions: rows of [matrix | right sides]; nothing when singular."""
    rows = [row[:] for row in rows]
    for k in range(n):
        pivot = next((i for i in range(k, n) if rows[i][k] != 0), None)
        if pivot is None:
            return None
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(n):
            if i != k and rows[i][k] != 0:
                factor = rows[i][k] / rows[k][k]
                rows[i] = [a - factor * b for a, b in zip(rows[i], rows[k])]
    return [[value / rows[k][k] for value in rows[k][n:]] for k in range(n)]


class Data:
    def __init__(self, columns):
        self.columns = [[Fraction(value) for value in column] for column in columns]
        self.n = len(columns[0])
        self.m = len(columns) - 1
        self.y = self.columns[-1]
        mean = sum(self.y) / self.n
        self.sst = sum((value - mean) ** 2 for value in self.y)
        everything = [[Fraction(1)] * self.n] + self.columns
        self.products = [[sum(a * b for a, b in zip(u, v)) for v in everything] for u in everything]
        self.fits = {}

    def fit(self, controls):
        """SSE and (X'X)^-1 with the coefficients as the last column; nothing for a dependent set."""
        if controls not in self.fits:
            p = len(controls) + 1
            index = (0,) + controls
            rows = [
                [self.products[i][j] for j in index] + [Fraction(int(a == b)) for b in range(p)] + [self.products[i][-1]]
                for a, i in enumerate(index)
            ]
            solution = solve(rows, p)
            sse = None
            if solution is not None:
                sse = self.products[-1][-1] - sum(row[-1] * self.products[i][-1] for i, row in zip(index, solution))
            self.fits[controls] = (sse, solution)
        return self.fits[controls]

    def dependent(self, controls):
        return self.fit(controls)[0] is None

    def independent(self, controls):
        kept = ()
        for control in controls:
            if not self.dependent(kept + (control,)):
                kept += (control,)
        return kept

    def sse(self, controls):
        return self.fit(self.independent(controls))[0]

    def freedom(self, controls):
        return self.n - 1 - len(controls)

    def press(self, controls):
        _, solution = self.fit(controls)
        total = Fraction(0)
        for i in range(self.n):
            x = [Fraction(1)] + [self.columns[j - 1][i] for j in controls]
            leverage = sum(a * b * solution[r][c] for r, a in enumerate(x) for c, b in enumerate(x))
            if leverage == 1:
                return None
            total += ((self.y[i] - sum(a * row[-1] for a, row in zip(x, solution))) / (1 - leverage)) ** 2
        return total

    def figures(self, controls):
        k = len(controls)
        out = {"controls": list(controls), "dependent": self.dependent(controls), "sse": text(self.sse(controls))}
        out["rSquared"] = text(1 - self.sse(controls) / self.sst)
        freedom = self.freedom(controls)
        if out["dependent"] or freedom <= 0:
            return out
        sse = self.sse(controls)
        out["sSquared"] = text(sse / freedom)
        out["adjustedRSquared"] = text(1 - sse / freedom / (self.sst / (self.n - 1)))
        out["press"] = text(self.press(controls))
        full = self.independent(tuple(range(1, self.m + 1)))
        if self.freedom(full) > 0 and self.sse(full) > 0:
            out["cp"] = text(sse / (self.sse(full) / self.freedom(full)) - self.n + 2 * (k + 1))
        if sse > 0:
            out["f"] = text((self.sst - sse) / k / (sse / freedom))
            deviance = self.n * (mpmath.log(2 * mpmath.pi) + mpmath.log(number(sse / self.n)) + 1)
            out["aic"] = text(deviance + 2 * (k + 2))
            out["bic"] = text(deviance + (k + 2) * mpmath.log(self.n))
        return out

    def partial(self, without, control):
        """F and p of a control; infinite and None mean what they mean in the program."""
        given = tuple(sorted(without + (control,)))
        if self.dependent(given) or self.freedom(given) <= 0:
            return None, None
        before, after = self.sse(without), self.sse(given)
        if after == 0:
            return (None if before == 0 else mpmath.inf), None
        f = number((before - after) / (after / self.freedom(given)))
        return f, tail(f, self.freedom(given))

    def best(self, criterion):
        found = None
        for k in range(1, self.m + 1):
            for controls in combinations(range(1, self.m + 1), k):
                if self.dependent(controls) or self.freedom(controls) <= 0:
                    continue
                if self.sse(controls) == 0:
                    key = -mpmath.inf
                    if criterion == "press" and self.press(controls) is None:
                        continue
                else:
                    figures = self.figures(controls)
                    key = figures.get(criterion)
                    if key is None:
                        continue
                    key = -key if criterion == "adjustedRSquared" else key
                if found is None or key < found[0]:
                    found = (key, controls)
        return list(found[1]) if found else None

    def search(self, method, enter, remove):
        model = self.independent(tuple(range(1, self.m + 1))) if method == "backward" else ()
        path = []

        def told(action, control, candidates, f, p):
            path.append({
                "action": action, "control": control, "sse": text(self.sse(model)), "f": shown(f), "pValue": text(p),
                "candidates": [{"control": c, "f": shown(g), "pValue": text(q)} for c, g, q in candidates]})

        def entering():
            return [(c, *self.partial(model, c)) for c in range(1, self.m + 1) if c not in model]

        def leaving():
            return [(c, *self.partial(tuple(x for x in model if x != c), c)) for c in model]

        def add():
            nonlocal model
            candidates = entering()
            usable = [c for c in candidates if c[1] is not None]
            if not usable:
                return False
            best = max(usable, key=lambda c: (c[1], -c[0]))
            if not best[1] > enter(self.freedom(model) - 1):
                return False
            model = tuple(sorted(model + (best[0],)))
            told("add", best[0], candidates, best[1], best[2])
            return True

        def take_out():
            nonlocal model
            candidates = leaving()
            if self.freedom(model) <= 0:
                return False

            def counted(c):
                return 0 if c[1] is None and self.sse(tuple(x for x in model if x != c[0])) == 0 else c[1]

            usable = [c for c in candidates if counted(c) is not None]
            if not usable:
                return False
            worst = min(usable, key=lambda c: (counted(c), c[0]))
            threshold = remove(self.freedom(model))
            if method == "stepwise":
                threshold = min(threshold, enter(self.freedom(model)))
            if not counted(worst) < threshold:
                return False
            model = tuple(c for c in model if c != worst[0])
            told("remove", worst[0], candidates, worst[1], worst[2])
            return True

        if method == "backward":
            while take_out():
                pass
        else:
            while add():
                while method == "stepwise" and take_out():
                    pass
        told("end", 0, (entering() if method != "backward" else []) + (leaving() if method != "forward" else []),
             None, None)
        return {"path": path, "selected": list(model)}


def shown(f):
    return "infinite" if f == mpmath.inf else text(f)


def tail(f, freedom):
    d = mpmath.mpf(freedom)
    return mpmath.betainc(d / 2, mpmath.mpf(1) / 2, 0, d / (d + f), regularized=True)


def quantile(p, freedom):
    p = mpmath.mpf(p)
    if p >= 1:
        return mpmath.mpf(0)
    low, high = mpmath.mpf(0), mpmath.mpf(1)
    while tail(high, freedom) > p:
        high *= 2
    for _ in range(200):
        middle = (low + high) / 2
        low, high = (middle, high) if tail(middle, freedom) > p else (low, middle)
    return (low + high) / 2


QUANTILES = {}


def threshold(kind, value):
    if kind == "f":
        return lambda freedom: value

    def by_probability(freedom):
        if (value, freedom) not in QUANTILES:
            QUANTILES[value, freedom] = quantile(value, freedom)
        return QUANTILES[value, freedom]

    return by_probability


def sets():
    rng = random.Random(20241122)

    def integers(n, top):
        return [float(rng.randint(0, top)) for _ in range(n)]

    yield "cement", csv_columns(ROOT / "samples" / "Cement.csv")
    longley = csv_columns(HERE.parent / "nist" / "Longley.csv")
    yield "longley", longley[1:] + longley[:1]
    yield "stackloss", [[float(v) for v in column] for column in STACKLOSS]

    n = 20
    base = [1e4 + rng.gauss(0, 1) for _ in range(n)]
    near = [v + 1e-3 * rng.gauss(0, 1) for v in base]
    third = [a - b + 1e-4 * rng.gauss(0, 1) for a, b in zip(base, near)]
    free = [rng.gauss(0, 1) for _ in range(n)]
    yield "ill-conditioned", [base, near, third, free,
                              [3 * a + 400 * (a - b) + f + 0.3 * rng.gauss(0, 1) for a, b, f in zip(base, near, free)]]

    n = 14
    a, b, c = integers(n, 20), integers(n, 20), integers(n, 20)
    yield "dependent", [a, b, [u + v for u, v in zip(a, b)], c, [2 * u for u in c], [u - v + rng.randint(0, 6) for u, v in zip(a, c)]]
    yield "exact", [a, b, c, integers(n, 9), [2 * u - v + 5 for u, v in zip(a, c)]]
    yield "few records", [integers(5, 9) for _ in range(7)]
    yield "one record more than controls", [integers(5, 9) for _ in range(4)]
    alone = [0.0] * n
    alone[3] = 1.0
    yield "a record alone", [a, alone, b, [u + rng.randint(0, 9) for u in a]]
    far = [float(v) for v in c]
    far[5] = 3e7
    yield "a record far away", [a, far, b, [u + rng.randint(0, 9) for u in a]]
    many = [integers(30, 30) for _ in range(8)]
    many.append([2 * many[1][i] - many[4][i] + many[6][i] / 2 + rng.randint(0, 40) for i in range(30)])
    yield "eight controls", many


SEARCHES = [
    ("forward", "f", 4.0, 0.0), ("backward", "f", 0.0, 4.0), ("stepwise", "f", 4.0, 3.9), ("stepwise", "f", 1.0, 9.0),
    ("forward", "f", -60.0, 0.0), ("forward", "p", 0.05, 1.0), ("backward", "p", 1.0, 0.1),
    ("stepwise", "p", 0.15, 0.15), ("stepwise", "p", 0.05, 0.1), ("stepwise", "p", 0.25, 0.1),
]
CRITERIA = ["cp", "aic", "bic", "adjustedRSquared", "press"]


def made():
    out = []
    for name, columns in sets():
        data = Data(columns)
        subsets = [data.figures(controls) for k in range(1, data.m + 1)
                   for controls in combinations(range(1, data.m + 1), k)]
        searches = [{"method": method, "kind": kind, "enter": enter, "remove": remove,
                     **data.search(method, threshold(kind, enter), threshold(kind, remove))}
                    for method, kind, enter, remove in SEARCHES]
        out.append({"name": name, "columns": columns, "sst": text(data.sst), "subsets": subsets, "searches": searches,
                    "best": {criterion: data.best(criterion) for criterion in CRITERIA}})
    return "[\n" + ",\n".join(json.dumps(one, separators=(",", ":")) for one in out) + "\n]\n"


def main():
    file = HERE / "reference.json"
    if "--check" in sys.argv[1:]:
        sys.exit(0 if file.read_text() == made() else f"{file} is not what this script writes")
    file.write_text(made())


main()
