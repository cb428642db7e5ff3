#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Inference, diagnostics and influence of least-squares fits, worked out from their definitions with 100 digits, and the
maker of the files beside this one. Nothing here is shared with the program.

    reference.py              writes SET.json for every set (needs python3-mpmath)
    reference.py --check      fails unless the files are what it would write

Each file holds `columns` (the controls), `response`, and the figures, rounded to doubles once at the end. A figure
that does not exist is null. The columns of a set are doubles and exact; nothing is worked out from rounded figures.
"""

import csv
import json
import random
import re
import sys
from pathlib import Path

from mpmath import mp, mpf

mp.dps = 100
HERE = Path(__file__).parent
LEVEL = mpf("0.95")
# To working precision a column depends on others when what they leave of it is shorter than this part of the lengths of
# the combination's terms together.
DEPENDENT = mp.sqrt(mpf("5e-26"))


def dot(a, b):
    return mp.fdot(a, b)


def inverted(matrix):
    """Of a Gram matrix, scaled to a unit diagonal on the way: what is tiny is not taken for nothing."""
    p = matrix.rows
    scale = [1 / mp.sqrt(matrix[i, i]) for i in range(p)]
    unit = mp.inverse(mp.matrix([[matrix[i, j] * scale[i] * scale[j] for j in range(p)] for i in range(p)]))
    return mp.matrix([[unit[i, j] * scale[i] * scale[j] for j in range(p)] for i in range(p)])


def solve(matrix, side):
    return list(inverted(matrix) * mp.matrix(side))


def gram(columns):
    p = len(columns)
    result = mp.matrix(p, p)
    for i in range(p):
        for j in range(i + 1):
            result[i, j] = result[j, i] = dot(columns[i], columns[j])
    return result


def fit(columns, y):
    """Coefficients and residuals on independent columns."""
    b = solve(gram(columns), [dot(c, y) for c in columns])
    return b, [v - mp.fsum(bj * c[i] for bj, c in zip(b, columns)) for i, v in enumerate(y)]


def independent(columns):
    """The numbers of the columns that do not depend on those before, the first one always."""
    kept = [0]
    for k in range(1, len(columns)):
        if len(kept) >= len(columns[0]):
            break
        b, rest = fit([columns[j] for j in kept], columns[k])
        size = mp.norm(columns[k]) + mp.fsum(abs(bj) * mp.norm(columns[j]) for bj, j in zip(b, kept))
        if mp.norm(rest) > DEPENDENT * size:
            kept.append(k)
    return kept


def t_tail(t, df):
    if t is None:
        return None
    x = df / (df + t * t)
    if x > mpf("0.5"):
        return 1 - mp.betainc(mpf(1) / 2, mpf(df) / 2, 0, 1 - x, regularized=True)
    return mp.betainc(mpf(df) / 2, mpf(1) / 2, 0, x, regularized=True)


def f_tail(f, a, b):
    return mp.betainc(mpf(b) / 2, mpf(a) / 2, 0, b / (b + a * f), regularized=True)


def chi_tail(x, df):
    return mp.gammainc(mpf(df) / 2, x / 2, mp.inf, regularized=True)


def t_quantile(level, df):
    low, high = mpf(0), mpf(2) ** 20
    with mp.workdps(30):
        for _ in range(100):
            middle = (low + high) / 2
            low, high = (middle, high) if t_tail(middle, df) > 1 - level else (low, middle)
    return low


def polynomial(coefficients, x):
    return mp.fsum(mpf(c) * x ** i for i, c in enumerate(coefficients))


def shapiro_wilk(values):
    """Royston 1995."""
    n = len(values)
    if n < 3 or n > 5000:
        return None
    x = sorted(values)
    m = [mp.sqrt(2) * mp.erfinv(2 * (i + 1 - mpf("0.375")) / (n + mpf("0.25")) - 1) for i in range(n)]
    if n == 3:
        a = [-mp.sqrt(mpf(1) / 2), mpf(0), mp.sqrt(mpf(1) / 2)]
    else:
        u = 1 / mp.sqrt(n)
        mm = dot(m, m)
        a = [None] * n
        last = m[-1] / mp.sqrt(mm) + polynomial("0 0.221157 -0.147981 -2.07119 4.434685 -2.706056".split(), u)
        if n > 5:
            next_ = m[-2] / mp.sqrt(mm) + polynomial("0 0.042981 -0.293762 -1.752461 5.682633 -3.582633".split(), u)
            phi = (mm - 2 * m[-1] ** 2 - 2 * m[-2] ** 2) / (1 - 2 * last ** 2 - 2 * next_ ** 2)
            ends = {n - 1: last, n - 2: next_, 0: -last, 1: -next_}
        else:
            phi = (mm - 2 * m[-1] ** 2) / (1 - 2 * last ** 2)
            ends = {n - 1: last, 0: -last}
        a = [ends.get(i, m[i] / mp.sqrt(phi)) for i in range(n)]
    mean = mp.fsum(x) / n
    w = dot(a, x) ** 2 / mp.fsum((v - mean) ** 2 for v in x)
    if n == 3:
        p = 6 / mp.pi * (mp.asin(mp.sqrt(w)) - mp.asin(mp.sqrt(mpf(3) / 4)))
    else:
        y = mp.log(1 - w)
        if n <= 11:
            y = -mp.log(polynomial("-2.273 0.459".split(), n) - y)
            mu = polynomial("0.544 -0.39978 0.025054 -0.0006714".split(), n)
            sigma = mp.exp(polynomial("1.3822 -0.77857 0.062767 -0.0020322".split(), n))
        else:
            mu = polynomial("-1.5861 -0.31082 -0.083751 0.0038915".split(), mp.log(n))
            sigma = mp.exp(polynomial("-0.4803 -0.082676 0.0030302".split(), mp.log(n)))
        p = mp.erfc((y - mu) / sigma / mp.sqrt(2)) / 2
    return {"statistic": w, "pValue": p}


def centred(column):
    mean = mp.fsum(column) / len(column)
    return [v - mean for v in column]


def squares(column):
    return dot(column, column)


def reference(columns, y):
    n, m = len(y), len(columns)
    one = [mpf(1)] * n
    whole = [one] + [[mpf(v) for v in c] for c in columns]
    y = [mpf(v) for v in y]
    kept = independent(whole)
    x = [whole[j] for j in kept]
    p, df = m + 1, n - m - 1
    b, e = fit(x, y)
    inverse = inverted(gram(x))
    sse, sst = squares(e), squares(centred(y))
    size = mp.norm(y) + mp.fsum(abs(bj) * mp.norm(c) for bj, c in zip(b, x))
    exact = sse <= (DEPENDENT * size) ** 2
    if exact:
        sse, e = mpf(0), [mpf(0)] * n
    has = df > 0
    place = {j: k for k, j in enumerate(kept)}
    variance = sse / df if has else None
    s = mp.sqrt(variance) if has else None
    quantile = t_quantile(LEVEL, df) if has else None

    def per(indices, figure):
        return [figure(place[j], j) if j in place else None for j in indices]

    every, terms = range(p), range(1, p)
    out = {"coefficients": per(every, lambda k, j: b[k]), "degreesOfFreedom": max(df, 0), "dependent":
           [j for j in every if j not in place], "exact": bool(exact)}
    se = per(every, lambda k, j: s * mp.sqrt(inverse[k, k]) if has else None)
    tv = per(every, lambda k, j: b[k] / se[j] if has and not exact else None)
    inference = {
        "level": LEVEL, "standardErrors": se, "tValues": tv, "pValues": [t_tail(t, df) for t in tv],
        "confidence": per(every, lambda k, j: [b[k] - quantile * se[j], b[k] + quantile * se[j]] if has else [None, None])}
    inference["confidence"] = [c if c else [None, None] for c in inference["confidence"]]
    f = (sst - sse) / m / variance if has and m and not exact else None
    inference["fPValue"] = None if f is None else f_tail(f, m, df)
    inference["adjustedRSquared"] = (mpf(0) if m == 0 else 1 - variance / (sst / (n - 1))) if has and sst > 0 else None
    names = ["logLikelihood", "aic", "aicc", "bic", "hqc"]
    if has and not exact:
        k = mpf(m + 2)
        l = -mpf(n) / 2 * (mp.log(2 * mp.pi) + mp.log(sse / n) + 1)
        aic = 2 * k - 2 * l
        likelihood = [l, aic, aic + 2 * k * (k + 1) / (n - k - 1) if n > k + 1 else None, k * mp.log(n) - 2 * l,
                      2 * k * mp.log(mp.log(n)) - 2 * l]
    else:
        likelihood = [None] * 5
    inference.update(zip(names, likelihood))

    def others_r2(k):
        rest = fit([c for i, c in enumerate(x) if i != k], x[k])[1]
        return 1 - squares(rest) / squares(centred(x[k]))

    def partial(k):
        if exact or not has:
            return b[k] ** 2 / inverse[k, k]
        return squares(fit([c for i, c in enumerate(x) if i != k], y)[1]) - sse

    sign = lambda v: -1 if v < 0 else 1
    partials = per(terms, lambda k, j: partial(k))
    ratio = lambda a, c: mp.sqrt(a / c) if c > 0 else None
    sequential = []
    for j in terms:
        if j not in place:
            sequential.append(mpf(0))
            continue
        k = place[j]
        sequential.append(squares(fit(x[:k], y)[1]) - squares(fit(x[:k + 1], y)[1]))
    inference.update({
        "standardized": per(terms, lambda k, j: b[k] * mp.sqrt(squares(centred(x[k])) / sst) if sst > 0 else None),
        "tolerance": per(terms, lambda k, j: 1 - others_r2(k)),
        "vif": per(terms, lambda k, j: 1 / (1 - others_r2(k))),
        "partialCorrelations": per(terms, lambda k, j: sign(b[k]) * ratio(partials[j - 1], partials[j - 1] + sse)
                                   if partials[j - 1] + sse > 0 else None),
        "semipartialCorrelations": per(terms, lambda k, j: sign(b[k]) * ratio(partials[j - 1], sst) if sst > 0 else None),
        "sequentialSumsOfSquares": sequential, "partialSumsOfSquares": partials})
    unit = [[v / mp.norm(c) for v in c] for c in x]
    values = sorted(mp.eigsy(gram(unit), eigvals_only=True), reverse=True)
    inference["conditionIndices"] = [mp.sqrt(values[0] / v) for v in values] + [None] * (p - len(kept))
    out["inference"] = inference

    h = []
    directions = []
    for i in range(n):
        row = mp.matrix([c[i] for c in x])
        directions.append(inverse * row)
        h.append((row.T * directions[-1])[0])
    one_ = [1 - v < mpf("1e-22") for v in h]
    h = [mpf(1) if o else v for v, o in zip(h, one_)]
    sound = has and not exact
    out["diagnostics"] = diagnostics(x, y, e, h, one_, sse, sst, n, m, df, has, exact)
    out["fitted"] = [a - c for a, c in zip(y, e)]
    out["residuals"] = e
    influence = {key: [] for key in ["leverage", "standardizedResiduals", "studentizedResiduals", "cook", "dffits", "covRatio",
                                     "dfbetas"]}
    for i in range(n):
        influence["leverage"].append(h[i])
        if not sound or one_[i]:
            for key in list(influence)[1:-1]:
                influence[key].append(None)
            influence["dfbetas"].append([None] * p)
            continue
        r = 1 - h[i]
        influence["standardizedResiduals"].append(e[i] / (s * mp.sqrt(r)))
        influence["cook"].append((e[i] / (s * r)) ** 2 * h[i] / p)
        left = sse - e[i] ** 2 / r
        without = mp.sqrt(left / (df - 1)) if df > 1 and left > mpf("1e-20") * sse else None
        divide = lambda v: None if without is None else v / without
        influence["studentizedResiduals"].append(divide(e[i] / mp.sqrt(r)))
        influence["dffits"].append(divide(e[i] * mp.sqrt(h[i]) / r))
        influence["covRatio"].append(None if without is None else (without / s) ** (2 * p) / r)
        influence["dfbetas"].append(per(every, lambda k, j: divide(directions[i][k] * e[i] / r / mp.sqrt(inverse[k, k]))))
    out["influence"] = influence
    out["robust"] = {kind: robust(kind, x, e, h, one_, inverse, b, place, n, p, df, has, exact)
                     for kind in ["hc0", "hc1", "hc2", "hc3", "hac"]}
    out["predictions"] = []
    for at in points(columns, kept):
        x0 = mp.matrix([1] + [mpf(v) for v in at]) if m else mp.matrix([1])
        x0 = mp.matrix([x0[j] for j in kept])
        value = mp.fsum(bj * v for bj, v in zip(b, x0))
        h0 = (x0.T * inverse * x0)[0]
        mean = s * mp.sqrt(h0) if has else None
        new = s * mp.sqrt(1 + h0) if has else None
        width = lambda v: [None, None] if v is None else [value - quantile * v, value + quantile * v]
        out["predictions"].append({"at": at, "value": value, "standardError": mean, "confidence": width(mean),
                                   "prediction": width(new)})
    return out


def points(columns, kept):
    """Near the first and beyond the last observation, multiples of one observation: so that what depends still does."""
    if not columns:
        return [[]]
    first = [c[0] for c in columns]
    last = [c[-1] * 2 for c in columns]
    return [first, last]


def diagnostics(x, y, e, h, ones, sse, sst, n, m, df, has, exact):
    none = {"durbinWatson": None, "press": None, "predictedRSquared": None, "breuschPagan": None, "white": None,
            "jarqueBera": None, "shapiroWilk": None, "reset": None}
    if not has:
        return none
    out = dict(none)
    if not any(ones):
        out["press"] = mp.fsum((v / (1 - hi)) ** 2 for v, hi in zip(e, h))
        out["predictedRSquared"] = 1 - out["press"] / sst if sst > 0 else None
    if exact:
        return out
    out["durbinWatson"] = mp.fsum((e[i] - e[i - 1]) ** 2 for i in range(1, n)) / sse
    u = [v * v for v in e]

    def explained(columns):
        rest = fit(columns, u)[1]
        return n * (1 - squares(rest) / squares(centred(u)))

    if m:
        statistic = explained(x)
        out["breuschPagan"] = {"statistic": statistic, "df": m, "pValue": chi_tail(statistic, m)}
        terms = x[1:]
        products = [[a * c for a, c in zip(terms[i], terms[j])] for i in range(len(terms)) for j in range(i, len(terms))]
        candidates = x + products
        kept = independent(candidates)
        if n > len(kept):
            statistic = explained([candidates[k] for k in kept])
            out["white"] = {"statistic": statistic, "df": len(kept) - 1, "pValue": chi_tail(statistic, len(kept) - 1)}
    moment = lambda k: mp.fsum(v ** k for v in e) / n
    skewness, kurtosis = moment(3) / moment(2) ** mpf("1.5"), moment(4) / moment(2) ** 2
    statistic = mpf(n) / 6 * (skewness ** 2 + (kurtosis - 3) ** 2 / 4)
    out["jarqueBera"] = {"statistic": statistic, "df": 2, "pValue": chi_tail(statistic, 2)}
    out["shapiroWilk"] = shapiro_wilk(e)
    if m and df > 2:
        fitted = centred([a - c for a, c in zip(y, e)])
        columns = x + [[v ** 2 for v in fitted], [v ** 3 for v in fitted]]
        if len(independent(columns)) == len(columns):
            rest = squares(fit(columns, y)[1])
            statistic = (sse - rest) / 2 / (rest / (df - 2))
            out["reset"] = {"statistic": statistic, "df": [2, df - 2], "pValue": f_tail(statistic, 2, df - 2)}
    return out


def robust(kind, x, e, h, ones, inverse, b, place, n, p, df, has, exact):
    if not has or (kind in ("hc2", "hc3") and any(ones)):
        return None
    weight = {"hc0": lambda i: e[i] ** 2, "hc1": lambda i: e[i] ** 2 * n / (n - p), "hc2": lambda i: e[i] ** 2 / (1 - h[i]),
              "hc3": lambda i: e[i] ** 2 / (1 - h[i]) ** 2, "hac": lambda i: e[i] ** 2}[kind]
    w = [weight(i) for i in range(n)]
    r = len(x)
    middle = mp.matrix(r, r)
    for i in range(r):
        for j in range(r):
            middle[i, j] = mp.fsum(a * c * v for a, c, v in zip(x[i], x[j], w))
    if kind == "hac":
        lags = int(mp.floor(4 * (mpf(n) / 100) ** (mpf(2) / 9)))
        for lag in range(1, min(lags, n - 1) + 1):
            for i in range(r):
                for j in range(r):
                    v = mp.fsum(x[i][k] * e[k] * x[j][k - lag] * e[k - lag] for k in range(lag, n))
                    v = v * (1 - mpf(lag) / (lags + 1))
                    middle[i, j] += v
                    middle[j, i] += v
    covariance = inverse * middle * inverse
    at = lambda i, j: covariance[place[i], place[j]] if i in place and j in place else None
    full = [[at(i, j) for j in range(p)] for i in range(p)]
    se = [None if full[j][j] is None else mp.sqrt(full[j][j]) for j in range(p)]
    tv = [None if v is None or exact else b[place[j]] / v for j, v in enumerate(se)]
    return {"standardErrors": se, "tValues": tv, "pValues": [t_tail(t, df) for t in tv], "covariance": full}


def read_csv(path, response):
    with open(path) as file:
        rows = list(csv.reader(file))
    columns = [[float(v) for v in c] for c in zip(*rows[1:])]
    return [c for i, c in enumerate(columns) if i != response % len(columns)], columns[response]


def sets():
    root = HERE.parent.parent.parent
    yield "Longley", *read_csv(root / "tests/data/nist/Longley.csv", 0)
    yield "Filip", *read_csv(root / "tests/data/nist/Filip_powers.csv", 0)
    yield "Cement", *read_csv(root / "samples/Cement.csv", -1)
    import math
    rows = re.findall(r"\('[-0-9]+', +([0-9NUL.]+), +([0-9NUL.]+), +([0-9.]+), +([0-9]+)\)",
                      (root / "samples/Airquality.sql").read_text())
    rows = [[float(v) for v in r] for r in rows if "NULL" not in r]
    assert len(rows) == 111
    yield ("Airquality", [[r[1] for r in rows], [math.log(r[2]) for r in rows], [r[3] for r in rows]],
           [math.log(r[0]) for r in rows])
    source = random.Random(1973)
    normal = lambda n, mean=0.0, sd=1.0: [source.gauss(mean, sd) for _ in range(n)]
    a, c = normal(40, 1e6), normal(40, -3)
    near = [v + 1e-5 * source.gauss(0, 1) for v in a]
    scaled = [1e7 * v for v in normal(40)]
    yield "illconditioned", [a, near, c, scaled], [v - w + 2 * z + source.gauss(0, 1e-3) for v, w, z in zip(a, near, c)]
    x1, x2 = [1, 4, 2, 8, 5, 7, 3, 9], [2, 7, 1, 8, 2, 8, 1, 8]
    yield "exact", [x1, x2], [2 + 3 * v - w for v, w in zip(x1, x2)]
    yield "saturated", [x1[:4], x2[:4], [1, 0, 0, 1]], [3, 1, 4, 1]
    yield "onedegree", [normal(6) for _ in range(4)], normal(6)
    yield "twodegrees", [normal(6) for _ in range(3)], normal(6)
    x1, x2, x4 = normal(20, 5), normal(20, 2), normal(20)
    noise = normal(20)
    yield ("dependent", [[round(v, 3) * 8 for v in x1], [round(v, 3) * 4 for v in x2],
                         [round(v, 3) * 8 - round(w, 3) * 4 for v, w in zip(x1, x2)], x4],
           [v + z + q for v, z, q in zip(x1, x4, noise)])
    x1, x2, y = normal(15, 5, 2), normal(15, 3, 1), normal(15, 7, 3)
    yield "large", [[v * 1e150 for v in x1], [v * 1e149 for v in x2]], [v * 1e150 for v in y]
    yield "small", [[v * 1e-150 for v in x1], [v * 1e-149 for v in x2]], [v * 1e-150 for v in y]
    yield "none", [], y
    yield "leverageone", [x1, [0.0] * 6 + [1.0] + [0.0] * 8], y
    yield "dummies", [[float(i % 2) for i in range(24)], [float(i % 3 == 0) for i in range(24)], normal(24, 4)], normal(24, 10)
    yield "three", [[1.0, 2.0, 4.0]], [1.0, 3.0, 4.0]
    steep = [float(i) for i in range(1, 61)]
    yield "steep", [steep], [3 * v + 1e-5 * source.gauss(0, 1) for v in steep]


def plain(value):
    if isinstance(value, dict):
        return {k: plain(v) for k, v in value.items()}
    if isinstance(value, (list, tuple)):
        return [plain(v) for v in value]
    if value is None or isinstance(value, (bool, int)):
        return value
    return float(mp.nstr(mpf(value), 25)) if mp.isfinite(value) else None


def main():
    wanted = [a for a in sys.argv[1:] if not a.startswith("--")]
    different = []
    for name, columns, y in sets():
        if wanted and name not in wanted:
            continue
        text = json.dumps(plain({"columns": columns, "response": y, **reference(columns, y)}), indent=0,
                          separators=(",", ": ")) + "\n"
        text = re.sub(r",\n(?=[-\d]|null)", ", ", text)
        file = HERE / f"{name}.json"
        if "--check" in sys.argv:
            if not file.exists() or file.read_text() != text:
                different.append(name)
        else:
            file.write_text(text)
            print(name, len(text))
    if different:
        sys.exit("not as worked out: " + ", ".join(different))


if __name__ == "__main__":
    main()
