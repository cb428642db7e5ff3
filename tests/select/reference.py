#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A second, slow and plain implementation of the four selection methods, and the maker of the fixtures in tests/data/select.

Nothing here is shared with the program: normal equations are solved with exact fractions of the doubles that are
fitted, one candidate at a time, and rounded once at the end. What the program must then agree with is a trace of every
candidate and decision, the texts of the progress dialog, the message boxes, the report and the definitions that are
left behind. Decisions are compared exactly, numbers to a relative 1e-9.

    reference.py              writes the fixtures
    reference.py --check      fails unless the fixtures are what it would write
    reference.py --random N --seed S FILE
                              writes N runs over random data into FILE

A case whose decisions would hang on the last bits of a double is no case: the searches raise Delicate when two
numbers that they compare differ by less than a relative 1e-8 without being equal, when a model is singular or fits
exactly in a way that rounding can spoil, and the makers of the fixtures then leave the case out.
"""

import argparse
import csv
import json
import math
import random
import sqlite3
import sys
from decimal import ROUND_HALF_UP, Context, Decimal
from fractions import Fraction
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FIXTURES_DIRECTORY = ROOT / "tests" / "data" / "select"
SAMPLES = ROOT / "samples"

CONTROLS = 10
MAX_OBSERVATIONS = 2500
LIST_ENTRIES = 20
TOLERANCE = 1e-20
UNDEFINED = "Undefined"
END = "\n\r"

NO_FREEDOM = ("error", "There are 0 degrees of freedom.")
INVARIANT = ("error", "The dataset has an invariant\n\rcolumn. Matrix is singular!")
CAME_BACK = ("warning", "The search came back to a model that it had already been at and was ended.")


class Delicate(Exception):
    """The outcome would hang on rounding."""


class RunError(Exception):
    """An error of the platform that passes through a run: the name of its class."""


# Numbers.


def greater(a, b):
    """a > b for numbers that are equal or clearly apart."""
    if math.isnan(a) or math.isnan(b):
        return False
    if a != b and math.isfinite(a) and math.isfinite(b) and abs(a - b) <= 1e-8 * max(abs(a), abs(b)):
        raise Delicate(f"{a} against {b}")
    return a > b


def less(a, b):
    return greater(b, a)


def difference(a, b):
    """a - b for numbers that are equal or differ by more than their last digits."""
    if a != b and abs(a - b) <= 1e-5 * max(abs(a), abs(b)):
        raise Delicate(f"{a} - {b}")
    return a - b


def divide(a, b):
    """a / b as floating point has it."""
    if b != 0:
        return a / b
    if a == 0 or math.isnan(a):
        return math.nan
    return math.copysign(math.inf, a) * math.copysign(1, b)


def fixed(value, precision=8, decimals=4):
    """Fixed notation, rounded once, half away from zero, to both bounds; general notation where it does not fit."""
    if math.isnan(value):
        return "NAN"
    if math.isinf(value):
        return "INF" if value > 0 else "-INF"
    context = Context(prec=800, rounding=ROUND_HALF_UP)
    size = abs(Decimal(value))
    digits = size.adjusted() + 1 if size >= 1 else 0
    if digits <= precision:
        places = min(decimals, precision - digits)
        rounded = size.quantize(Decimal(1).scaleb(-places), context=context)
        if rounded < Decimal(10) ** precision:
            sign = "-" if value < 0 and rounded != 0 else ""
            return sign + format(rounded.quantize(Decimal(1).scaleb(-decimals), context=context), "f")
    rounded = size.quantize(Decimal(1).scaleb(size.adjusted() - precision + 1), context=context)
    exponent = rounded.adjusted()
    mantissa = rounded.scaleb(-exponent).normalize(context)
    return ("-" if value < 0 else "") + format(mantissa, "f") + f"E{exponent}"


# Definitions: six texts each.


def undefined_control():
    return ["Inactive", UNDEFINED, "Datafield1", "Datafield2", "1.00", "10"]


def control(transformation, field1, field2="Datafield2", exponent="1.00", scale="10"):
    return ["Active", transformation, field1, field2, exponent, scale]


def response(field, transformation="None", scale="1"):
    return [UNDEFINED, transformation, field, UNDEFINED, UNDEFINED, scale]


def set_transformation(definition, transformation):
    definition[1] = transformation
    if transformation != UNDEFINED:
        definition[0] = "Active"


def output_term(definition):
    _, transformation, field1, field2, exponent, scale = definition
    return {
        "None": field1,
        "Log": f"Ln({field1})",
        "Inverse": f"1/{field1}",
        "Sqrt": f"{field1}^1/2",
        "Power": f"{field1}^{exponent}",
        "Scale": f"{field1}/{scale}",
        "Product": f"{field1}*{field2}",
        "Quotient": f"{field1}/{field2}",
        "Inactive": "Disabled",
        UNDEFINED: "Disabled",
    }.get(transformation, "")


def converted(convert, text):
    try:
        return convert(text)
    except ValueError as error:
        raise RunError("EConvertError") from error


def accepts(definition, record):
    """Whether a control can take its value from a record."""
    _, transformation, field1, field2, exponent, _ = definition
    value = record(field1)
    if value is None:
        return False
    if transformation in ("Log", "Sqrt"):
        return value > TOLERANCE
    if transformation == "Inverse":
        return abs(value) >= TOLERANCE
    if transformation == "Power":
        return converted(float, exponent) >= 0.5
    if transformation == "Product":
        return record(field2) is not None
    return True  # a divisor may be null or 0


def control_value(definition, record):
    """The value that a control takes from a record that it accepts."""
    _, transformation, field1, field2, exponent, scale = definition
    value = record(field1)
    if transformation == "Log":
        return math.log(value)
    if transformation == "Sqrt":
        return math.sqrt(value)
    if transformation == "Inverse":
        return 1 / value
    if transformation == "Power":
        if value == 0:
            return 0.0
        power = math.pow(abs(value), converted(int, exponent))
        return power if int(exponent) % 2 == 0 else -power
    if transformation == "Scale":
        return value / converted(float, scale)
    if transformation == "Product":
        return value * record(field2)
    if transformation == "Quotient":
        if not record(field2):
            raise Delicate("a divisor of 0 gives infinities")
        return value / record(field2)
    return float(value)


def accepts_response(definition, record):
    _, transformation, field, _, _, scale = definition
    value = record(field)
    if value is None:
        return False
    if transformation == "Log":
        return value > TOLERANCE
    if transformation == "Inverse":
        return abs(value) > TOLERANCE
    if transformation == "Scale":
        return abs(converted(float, scale)) > TOLERANCE
    return True


def response_value(definition, record):
    _, transformation, field, _, _, scale = definition
    value = record(field)
    if transformation == "Log":
        return math.log(value)
    if transformation == "Inverse":
        return 1 / value
    if transformation == "Scale":
        return value / converted(float, scale)
    return float(value)


# The fit.


def is_dyadic(number):
    """Whether a fraction has few enough binary digits to come through double-double arithmetic unrounded."""
    return number.denominator & (number.denominator - 1) == 0 and number.numerator.bit_length() <= 50


class Fit:
    """Least squares on the constant and the columns, by the normal equations and with exact arithmetic.

    The elimination is the one that the matrix kernel documents (rows scaled by their largest value, the last of equal
    candidates is the pivot, a pivot of 0 becomes 1e-20), so that a column that stands in the model twice comes out as
    it does there: the later one gets the coefficient 0.
    """

    def __init__(self, columns, y):
        n = len(y)
        self.columns = len(columns)
        design = [[1.0] * n, *columns, y]
        size = self.columns + 1
        scaled = []  # whole numbers and the power of two that they are multiples of
        for column in design:
            ratios = [value.as_integer_ratio() for value in column]
            bits = max(denominator.bit_length() for _, denominator in ratios) - 1
            scaled.append(([p << (bits - q.bit_length() + 1) for p, q in ratios], bits))

        def product(a, b):
            return Fraction(sum(p * q for p, q in zip(a[0], b[0])), 1 << (a[1] + b[1]))

        products = [[product(a, b) for b in scaled] for a in scaled]
        matrix = [row[:size] for row in products[:size]]
        moments = [row[size] for row in products[:size]]
        sides = [[Fraction(int(i == k)) for k in range(size)] + [moments[i]] for i in range(size)]
        self.singular = False
        exact = self._factor(matrix, sides)
        inverse, b = self._substitute(matrix, sides)
        exact = exact and all(is_dyadic(value) for row in inverse for value in row)
        explained = sum(p * q for p, q in zip(b, moments))
        total = products[0][size]
        sse = products[size][size] - explained
        ssr = explained - total * total / products[0][0]
        exact = exact and all(is_dyadic(value) for value in (*b, explained, sse, ssr))
        if self.singular and not (exact or self._last_is_a_copy(columns)):
            raise Delicate("a singular matrix")
        if not exact and sse <= products[size][size] * Fraction(1, 10**16):
            if sse != 0 or n != size:
                raise Delicate("an exact fit")
        if not exact and columns and abs(ssr) <= (sse + ssr) * Fraction(1, 10**16):
            raise Delicate("nothing explained at all")
        self.exact = exact
        self.b = [float(value) for value in b]
        self.inverse = [float(inverse[j][j]) for j in range(size)]
        self.sse = float(sse)
        self.ssr = float(ssr)

    def _factor(self, matrix, sides):
        """Eliminates below the diagonal; whether it came through without rounding."""
        size = len(matrix)
        scale = [1 / max(abs(value) for value in row) for row in matrix]
        exact = True
        for j in range(size):
            pivot, big = j, Fraction(0)
            for i in range(j, size):
                candidate = scale[i] * abs(matrix[i][j])
                if candidate >= big:
                    pivot, big = i, candidate
            if pivot != j:
                matrix[j], matrix[pivot] = matrix[pivot], matrix[j]
                sides[j], sides[pivot] = sides[pivot], sides[j]
                scale[pivot] = scale[j]
            if matrix[j][j] == 0:
                if j != size - 1:
                    raise Delicate("a singular matrix")
                self.singular = True
                matrix[j][j] = Fraction(1e-20)
                continue
            if big < Fraction(1, 10**16):
                raise Delicate("a nearly singular matrix")
            for i in range(j + 1, size):
                factor = matrix[i][j] / matrix[j][j]
                exact = exact and is_dyadic(factor)
                if factor:
                    for k in range(j, size):
                        matrix[i][k] -= factor * matrix[j][k]
                    for k in range(size + 1):
                        sides[i][k] -= factor * sides[j][k]
        return exact and all(is_dyadic(value) for row in matrix[: size - 1] for value in row)

    @staticmethod
    def _substitute(matrix, sides):
        size = len(matrix)
        for i in reversed(range(size)):
            for k in range(size + 1):
                rest = sides[i][k] - sum(matrix[i][j] * sides[j][k] for j in range(i + 1, size))
                sides[i][k] = rest / matrix[i][i]
        return [row[:size] for row in sides], [row[size] for row in sides]

    @staticmethod
    def _last_is_a_copy(columns):
        return bool(columns) and columns[-1] in columns[:-1]


# The component.


class Data:
    """Columns by name, nulls as None, with what was already worked out about them."""

    def __init__(self, columns):
        self.columns = columns
        self.records = len(next(iter(columns.values())))
        self.loads = {}
        self.fits = {}


class Regression:
    """A regression component, as far as a search sees it."""

    def __init__(self, data, controls, response_definition, description, messages):
        self.data = data
        self.controls = [list(definition) for definition in controls]
        self.controls += [undefined_control() for _ in range(CONTROLS - len(controls))]
        self.response = response_definition
        self.description = description
        self.messages = messages
        self.columns = [undefined_control() for _ in range(CONTROLS + 1)]  # column j at j, kept beyond the last one
        self.variables = 0
        self.observations = 0
        self.freedom = 0
        self.loaded = False
        self.computed = False
        self.b = [0.0] * (CONTROLS + 1)
        self.variances = [0.0] * (CONTROLS + 1)
        self.sse = self.ssr = self.mse = self.r_squared = 0.0

    def transformations(self):
        return [definition[1] for definition in self.controls]

    def set_transformations(self, texts):
        for definition, text in zip(self.controls, texts):
            set_transformation(definition, text)

    def _key(self):
        active = [tuple(definition) for definition in self.controls if definition[1] != UNDEFINED]
        return tuple(active), tuple(self.response)

    def _load(self, active):
        names = {name.lower(): values for name, values in self.data.columns.items()}
        rows, y = [], []
        for i in range(self.data.records):

            def record(field, i=i):
                if field.lower() not in names:
                    raise RunError("EDatabaseError")
                return names[field.lower()][i]

            valid = all(accepts(definition, record) for definition in active)
            if not valid or not accepts_response(self.response, record):
                continue
            y.append(response_value(self.response, record))
            rows.append([control_value(definition, record) for definition in active])
            if len(y) == MAX_OBSERVATIONS:
                break
        return [[row[j] for row in rows] for j in range(len(active))], y

    def reload(self):
        key = self._key()
        active = key[0]
        self.loaded = False
        self.variables = len(active)
        for j, definition in enumerate(active, 1):
            self.columns[j] = list(definition)
        if key not in self.data.loads:
            self.data.loads[key] = self._load(active)
        columns, y = self.data.loads[key]
        self.observations = len(y)
        parameters = self.variables + 1
        if self.observations < parameters:
            self.freedom = 0
            self.messages.append(NO_FREEDOM)
        else:
            self.freedom = self.observations - parameters
        if y:
            if any(max(values) - min(values) < TOLERANCE for values in (y, *columns)):
                self.messages.append(INVARIANT)
            else:
                self.loaded = True
        return self.loaded

    def execute(self):
        if not self.loaded:
            return
        key = self._key()
        if key not in self.data.fits:
            columns, y = self.data.loads[key]
            self.data.fits[key] = Fit(columns, y)
        self.fit = self.data.fits[key]
        self.sse, self.ssr = self.fit.sse, self.fit.ssr
        self.mse = divide(self.sse, self.observations - (self.variables + 1))
        self.b = self.fit.b + [0.0] * (CONTROLS - self.variables)
        for j, value in enumerate(self.fit.inverse):
            self.variances[j] = value * self.mse
        self.computed = True

    def f(self):
        return divide(
            divide(self.ssr, self.variables), divide(self.sse, self.observations - (self.variables + 1))
        )

    def r2(self):
        total = self.sse + self.ssr
        if total > 0:
            self.r_squared = self.ssr / total
        return self.r_squared

    def squared_t(self, k):
        """(b / standard error)^2; 0 where an operation on the way fails."""
        variance = self.variances[k]
        if math.isnan(variance) or variance <= 0:
            return 0.0
        ratio = self.b[k] / math.sqrt(variance)
        return ratio * ratio

    def index_of(self, term):
        for j in range(1, self.variables + 1):
            if output_term(self.columns[j]) == term:
                return j
        return 0

    def set_controls(self, row, count):
        self.set_transformations(row[:count])
        return self.reload()


class FTable:
    """The table of critical values: rows in the order of their key, and the row that it stands on."""

    def __init__(self, definition):
        self.columns = definition["columns"]
        self.rows = sorted(definition["rows"], key=lambda row: row[:2])
        self.usable = definition.get("open", True) and definition.get("key", True)
        self.position = 0

    def critical(self, freedom, column):
        """The value for (1, freedom), that of the row it stands on where there is none; None where that fails."""
        if not self.usable:
            return None
        for i, row in enumerate(self.rows):
            if row[:2] == [1, freedom]:
                self.position = i
                break
        if column not in self.columns:
            return None
        if not self.rows:
            return 0.0
        value = self.rows[self.position][self.columns.index(column)]
        if value is None:
            return 0.0
        if isinstance(value, str):
            return None
        return float(value)


# The searches.


class Search:
    def __init__(self, regression, options, table, component):
        self.regression = regression
        self.options = options
        self.table = table
        self.component = component
        self.trace = []
        self.steps = []
        self.report = ""
        self.ended = "converged"
        self.models = []
        self.seen = set()

    def event(self, name, **values):
        self.trace.append({"event": name, **values})

    def start(self, method):
        self.n = self.regression.variables
        self.event("start", method=method, variables=self.n)

    def set_header(self):
        self.report = "CORVANE OUTPUT REPORT\n\r" + self.regression.description + END + END

    def finish(self, passes, always_shown=False):
        self.report += END + END + "Processing Time: hh:nn:ss"
        self.event("end", reason=self.ended, passes=passes, controls=self.regression.variables)
        if self.ended == "repeats":
            self.regression.messages.append(CAME_BACK)
        if always_shown or self.options.get("ShowReport", False):
            self.regression.messages.append(("information", self.report))

    def critical(self, column, default):
        value = self.table.critical(self.regression.freedom, column)
        return default if value is None else value

    def rows_at_start(self):
        active = self.regression.columns[1 : self.n + 1]
        self.own = [definition[1] for definition in active]
        self.names = [output_term(definition) for definition in active]

    def came_back(self, previous):
        """Whether a pass begins where one began before; what follows would only be the same again."""
        definitions = tuple(self.regression.transformations()[self.first_own_definition() :])
        state = (tuple(self.current), definitions, previous, self.table.position if self.table else None)
        if state in self.seen:
            self.ended = "repeats"
            return True
        self.seen.add(state)
        return False

    def first_own_definition(self):
        """From which control on (from 0) a pass finds what the one before left: the others it writes anew."""
        return self.n

    def candidate(self, i, instead):
        """The current model with `instead` for variable i (from 0), loaded."""
        row = list(self.current)
        row[i] = instead[i]
        return self.regression.set_controls(row, self.n)

    def partial_f(self, drop, ms):
        """drop / (ms / degrees of freedom); 0 where an operation on the way fails."""
        value = divide(drop, divide(ms, float(self.regression.freedom)))
        return value if math.isfinite(value) else 0.0


class Optimal(Search):
    def run(self):
        regression = self.regression
        self.start("optimal")
        criterion = self.options.get("OptCriteria", "Nondominated")
        limit = min(self.options.get("ModelsToSave", 1) or 1, LIST_ENTRIES)
        before = [list(definition) for definition in regression.controls]
        own = regression.transformations()
        names = [output_term(definition) for definition in regression.controls]
        best = {"f": 0.0, "r2": 0.0, "ms": 1e40}
        eliminated = ""
        models = []

        def dominates(a, b):
            better_r2 = greater(a["r2"], b["r2"])
            return better_r2 and less(a["ms"], b["ms"])

        better = {
            "Nondominated": dominates,
            "MinSsquared": lambda a, b: less(a["ms"], b["ms"]),
            "MaxFValue": lambda a, b: greater(a["f"], b["f"]),
        }[criterion]

        for r in range(1, 2**self.n):
            bits = format(r, f"0{self.n}b")
            regression.set_transformations([text if bit == "1" else UNDEFINED for bit, text in zip(bits, own)])
            if not regression.reload():
                self.event("subset", number=r, loaded=0, controls=regression.variables)
                continue
            regression.execute()
            if regression.observations <= regression.variables + 1 and not regression.fit.exact:
                raise Delicate("a saturated model")
            model = {"f": regression.f(), "r2": regression.r2(), "ms": regression.mse}
            accepted = len(models) < limit or any(better(model, entry) for entry in models)
            improved = better(model, best)
            if accepted:
                self.steps.append(f"(R)^2 = {fixed(model['r2'])},  (s)^2 = {fixed(model['ms'])}.")
                if improved:
                    best = model
                    eliminated = "".join(
                        f"   {name}{END}"
                        for name, text in zip(names, regression.transformations()[: self.n])
                        if text == UNDEFINED and name != "Disabled"
                    )
            saved = dict(model, transformations=regression.transformations())
            # A rejected model takes the last place as well.
            if len(models) < limit:
                models.append(saved)
            else:
                models[-1] = saved
            for i in range(len(models)):
                for j in range(i + 1, len(models)):
                    if better(models[j], models[i]):
                        models[i], models[j] = models[j], models[i]
            self.event(
                "subset", number=r, loaded=1, controls=regression.variables, ms=model["ms"], r2=model["r2"],
                f=model["f"], accepted=int(accepted), improved=int(improved), count=len(models),
            )  # fmt: skip
            self.set_header()
        if models:
            regression.set_transformations(models[0]["transformations"])
        else:
            regression.controls = before
        if regression.reload():
            regression.execute()
        if regression.variables >= self.n:
            self.report += "Full (Current) Model is Optimal." + END + "No variables removed."
        else:
            self.report += "Optimal Model Eliminates Variable(s):" + END + END + eliminated
        if len(models) > 1:
            self.report += END + END + f"The {len(models)} top models were saved."
        self.models = models
        self.finish(1, always_shown=True)


class Stepwise(Search):
    def first_own_definition(self):
        """All of them: what the re-check takes out by its term need not be what it takes out of the current row."""
        return 0

    def run(self):
        regression = self.regression
        self.start("stepwise")
        self.rows_at_start()
        self.out_default = abs(self.options.get("FOutDefault", 4.0))
        in_default = abs(self.options.get("FInDefault", 4.0))
        self.current = [UNDEFINED] * self.n
        self.previous = 0.0
        regression.set_controls(self.current, self.n)
        passes = 0
        while not self.came_back(self.previous):
            passes += 1
            best_ms, partial, chosen, critical = 1e50, 0.0, 0, in_default
            at_start = regression.transformations()
            for i in range(self.n):
                event = dict(number=i + 1)
                if not self.candidate(i, self.own):
                    self.event("candidate", **{"pass": passes}, **event, loaded=0, controls=regression.variables)
                    continue
                regression.execute()
                if self.table:
                    # The default of the removal stands in here too.
                    critical = self.critical(self.options.get("FPercent", ""), self.out_default)
                ms = regression.mse
                best = less(ms, best_ms)
                if best:
                    if regression.variables == 1:
                        partial = regression.f()
                    else:
                        partial = self.partial_f(difference(self.previous, ms), ms)
                    best_ms, chosen = ms, i
                self.event(
                    "candidate", **{"pass": passes}, **event, loaded=1, controls=regression.variables,
                    dof=regression.freedom, ms=ms, critical=critical, best=int(best), **({"f": partial} if best else {}),
                )  # fmt: skip
                self.set_header()
            regression.set_transformations(at_start)
            added = greater(partial, critical)
            verdict = {"add": chosen + 1} if added else {"none": None}
            self.event("decision", **{"pass": passes}, **verdict, f=partial, critical=critical)
            if added:
                set_transformation(regression.controls[chosen], self.own[chosen])
                regression.reload()
                self.current[chosen] = self.own[chosen]
                self.steps.append("Added Variable " + self.names[chosen])
                self.previous = best_ms
                if regression.variables > 1:
                    self.check_included(passes)
            if less(partial, critical) or regression.variables == self.n:
                break
        regression.set_controls(self.current, self.n)
        if regression.reload():
            regression.execute()
        included = regression.columns[1 : regression.variables + 1]
        if included:
            self.report += "Stepwise Regression Adds Variable(s):" + END + END
            self.report += "".join(f"   {output_term(definition)}{END}" for definition in included)
        if regression.variables == self.n:
            self.report += "Full Model."
        self.finish(passes)

    def check_included(self, passes):
        regression = self.regression
        self.steps.append("Checking included variables...")
        critical = self.out_default
        if regression.reload():
            regression.execute()
        for j in range(regression.variables, 0, -1):
            squared = regression.squared_t(j)
            if self.table:
                critical = self.critical("95 Percent", self.out_default)
            removed = less(squared, critical)
            self.event(
                "check", **{"pass": passes}, position=j, t2=squared, critical=critical, removed=int(removed)
            )
            if removed:
                term = output_term(regression.columns[j])
                # Row and position part company when the active controls are not the first ones: so it is kept.
                self.current[j - 1] = UNDEFINED
                for definition in regression.controls:
                    if output_term(definition) == term:
                        set_transformation(definition, UNDEFINED)
                self.steps.append(f"Removed {term}.")
                if regression.reload():
                    regression.execute()
                    self.previous = regression.mse


class Backward(Search):
    def run(self):
        regression = self.regression
        self.start("backward")
        self.rows_at_start()
        default = abs(self.options.get("FDefault", 4.0))
        out = [UNDEFINED] * self.n
        self.current = list(self.own)
        previous = 0.0
        squared = 0.0
        removed = []
        regression.set_controls(self.current, self.n)
        passes = 0
        while not self.came_back(previous):
            passes += 1
            min_ms, f, critical, chosen = 1e50, 0.0, default, 0
            for i in range(self.n):
                event = {"pass": passes, "number": i + 1}
                if self.current[i] != UNDEFINED:
                    k = regression.index_of(self.names[i])
                    squared = regression.squared_t(k) if k else 0.0
                    event["t2"] = squared
                if not self.candidate(i, out):
                    self.event("candidate", **event, loaded=0, controls=regression.variables)
                    continue
                regression.execute()
                if self.table:
                    critical = self.critical("95 Percent", default)
                ms = regression.mse
                best = less(ms, min_ms)
                if best:
                    f = self.partial_f(difference(ms, previous), ms)
                    min_ms, chosen = ms, i
                self.event(
                    "candidate", **event, loaded=1, controls=regression.variables, dof=regression.freedom, ms=ms,
                    critical=critical, best=int(best), **({"f": f} if best else {}),
                )  # fmt: skip
                self.set_header()
            leaves = greater(f, critical)
            verdict = {"remove": chosen + 1} if leaves else {"none": None}
            self.event("decision", **{"pass": passes}, **verdict, f=f, critical=critical)
            if leaves:
                self.current[chosen] = UNDEFINED
                removed.append(self.names[chosen])
                self.steps.append(f"Removing {self.names[chosen]}:  Partial F = {fixed(squared)}.")
                previous = min_ms
            if less(f, critical) or regression.variables == 0:
                break
        regression.set_controls(self.current, self.n)
        if regression.reload():
            regression.execute()
        if regression.variables < self.n:
            self.report += "Backward Elimination Removes Variable(s):" + END + END
            self.report += "".join(f"   {term}{END}" for term in removed)
        else:
            self.report += (END if self.component == "query" else "") + "Full Model."
        self.finish(passes)


class Forward(Search):
    def run(self):
        regression = self.regression
        self.start("forward")
        self.rows_at_start()
        default = abs(self.options.get("FDefault", 4.0))
        self.current = [UNDEFINED] * self.n
        previous = 0.0
        regression.set_controls(self.current, self.n)
        passes = 0
        while not self.came_back(previous):
            passes += 1
            min_ms, f, critical, chosen = 1e50, 0.0, default, 0
            for i in range(self.n):
                event = {"pass": passes, "number": i + 1}
                if not self.candidate(i, self.own):
                    self.event("candidate", **event, loaded=0, controls=regression.variables)
                    continue
                regression.execute()
                if self.table:
                    critical = self.critical("95 Percent", default)
                ms = regression.mse
                best = less(ms, min_ms)
                if best:
                    if regression.variables == 1:
                        f = regression.f()
                    else:
                        f = self.partial_f(difference(previous, ms), ms)
                    min_ms, chosen = ms, i
                self.event(
                    "candidate", **event, loaded=1, controls=regression.variables, dof=regression.freedom, ms=ms,
                    critical=critical, best=int(best), **({"f": f} if best else {}),
                )  # fmt: skip
                self.set_header()
            joins = greater(f, critical)
            verdict = {"add": chosen + 1} if joins else {"none": None}
            self.event("decision", **{"pass": passes}, **verdict, f=f, critical=critical)
            if joins:
                self.current[chosen] = self.own[chosen]
                self.steps.append(f"Adding {self.names[chosen]} Partial F = {fixed(f)}.")
                previous = min_ms
            if less(f, critical) or regression.variables == self.n:
                break
        regression.set_controls(self.current, self.n)
        if regression.reload():
            regression.execute()
        included = regression.columns[1 : regression.variables + 1]
        if included:
            self.report += "Forward Selection Adds Variable(s):" + END + END
            self.report += "".join(f"   {output_term(definition)}{END}" for definition in included)
        if regression.variables == self.n:
            self.report += "Full Model."
        self.finish(passes)


SEARCHES = {"optimal": Optimal, "stepwise": Stepwise, "backward": Backward, "forward": Forward}


def expected(run, data, tables):
    """What a run comes to. \\raises Delicate."""
    messages = []
    regression = Regression(data, run["controls"], run["response"], run.get("description", ""), messages)
    before = run.get("before", "fitted")
    if before != "nothing" and regression.reload() and before != "loaded":
        regression.execute()

    def search_of_its_own():
        table = tables[run["ftable"]] if "ftable" in run else None
        return SEARCHES[run["method"]](
            regression, run.get("options", {}), FTable(table) if table else None, run.get("component", "table")
        )

    if before == "run":
        # What that leaves is seldom the first control variables, so that positions and numbers part.
        try:
            search_of_its_own().run()
        except RunError as error:
            raise Delicate("no second run") from error
    del messages[:]
    at_start = [list(definition) for definition in regression.controls]
    search = search_of_its_own()
    error = None
    try:
        search.run()
    except RunError as passing:
        error = str(passing)
        del messages[:]
        regression.controls = at_start
    counted = []
    for message in messages:
        if counted and tuple(counted[-1][:2]) == message:
            counted[-1][2] += 1
        else:
            counted.append([*message, 1])
    result = {"trace": search.trace, "steps": search.steps}
    if error:
        result["error"] = error
    else:
        result["ended"] = search.ended
        result["report"] = search.report
        result["messages"] = counted
    result["definitions"] = [definition[:2] for definition in regression.controls]
    if run["method"] == "optimal" and not error:
        result["models"] = search.models
    if not error:
        result["loaded"] = regression.loaded
        result["controls"] = regression.variables
        if regression.loaded:
            result["ms"] = regression.mse
            result["b"] = regression.b[: regression.variables + 1]
    return result


def plain(value):
    """For JSON: what is not finite becomes a text."""
    if isinstance(value, float) and not math.isfinite(value):
        return str(value)
    if isinstance(value, dict):
        return {key: plain(item) for key, item in value.items()}
    if isinstance(value, (list, tuple)):
        return [plain(item) for item in value]
    return value


def same(a, b):
    """Whether two fixtures say the same; logarithms are rounded differently on some machines."""
    if isinstance(a, float) or isinstance(b, float):
        return isinstance(a, (int, float)) and isinstance(b, (int, float)) and math.isclose(a, b, rel_tol=1e-11)
    if isinstance(a, dict):
        return isinstance(b, dict) and list(a) == list(b) and all(same(a[key], b[key]) for key in a)
    if isinstance(a, list):
        return isinstance(b, list) and len(a) == len(b) and all(map(same, a, b))
    return a == b


class Group:
    """A fixture file in the making."""

    def __init__(self):
        self.data = {}
        self.tables = {}
        self.runs = []

    def add_data(self, name, **columns):
        self.data[name] = Data({key: list(values) for key, values in columns.items()})

    def add(self, name, data, method, controls, y, **rest):
        """rest: options, ftable, component, description, before."""
        definitions = [control("None", c) if isinstance(c, str) else c or undefined_control() for c in controls]
        definition = response(y) if isinstance(y, str) else y
        run = {"name": name, "data": data, "method": method, "controls": definitions, "response": definition, **rest}
        run["expected"] = expected(run, self.data[data], self.tables)
        self.runs.append(run)
        return run

    def json(self):
        used = {run["data"] for run in self.runs}
        tables = {run["ftable"] for run in self.runs if "ftable" in run}
        return {
            "data": {name: data.columns for name, data in self.data.items() if name in used},
            "tables": {name: table for name, table in self.tables.items() if name in tables},
            "runs": self.runs,
        }

    def text(self):
        parts = self.json()

        def lines(items):
            return ",\n".join(items)

        def one(value):
            return json.dumps(plain(value), ensure_ascii=False, separators=(",", ":"))

        data = lines(f"{one(name)}:{one(columns)}" for name, columns in parts["data"].items())
        tables = lines(f"{one(name)}:{one(table)}" for name, table in parts["tables"].items())
        runs = []
        for run in parts["runs"]:
            come_to = run["expected"]
            head = {key: value for key, value in run.items() if key != "expected"}
            rest = {key: value for key, value in come_to.items() if key != "trace"}
            trace = lines(one(event) for event in come_to["trace"])
            runs.append(f'{one(head)[:-1]},"expected":{{"trace":[\n{trace}],\n{one(rest)[1:]}}}')
        return f'{{"data":{{\n{data}}},\n"tables":{{\n{tables}}},\n"runs":[\n{lines(runs)}]}}\n'


# The fixtures.

# Upper critical values of F with 1 and 1 to 20 degrees of freedom, as tables print them.
ONE = [4052.2, 98.503, 34.116, 21.198, 16.258, 13.745, 12.246, 11.259, 10.561, 10.044, 9.6460, 9.3302, 9.0738, 8.8616,
       8.6831, 8.5310, 8.3997, 8.2854, 8.1849, 8.0960]  # fmt: skip
FIVE = [161.45, 18.513, 10.128, 7.7086, 6.6079, 5.9874, 5.5914, 5.3177, 5.1174, 4.9646, 4.8443, 4.7472, 4.6672, 4.6001,
        4.5431, 4.4940, 4.4513, 4.4139, 4.3807, 4.3512]  # fmt: skip
TEN = [39.863, 8.5263, 5.5383, 4.5448, 4.0604, 3.7759, 3.5894, 3.4579, 3.3603, 3.2850, 3.2252, 3.1765, 3.1362, 3.1022,
       3.0732, 3.0481, 3.0262, 3.0070, 2.9899, 2.9747]  # fmt: skip
KEY = ["Numerator", "Denominator"]
LEVELS = ["1 Percent", "5 Percent", "10 Percent", "95 Percent"]


def critical_values(rows=20):
    return {
        "columns": KEY + LEVELS,
        "rows": [[1, d, ONE[d - 1], FIVE[d - 1], TEN[d - 1], FIVE[d - 1]] for d in range(1, rows + 1)],
    }


def cement():
    with open(SAMPLES / "Cement.csv", newline="") as file:
        records = list(csv.DictReader(file))
    return {name: [float(record[name]) for record in records] for name in records[0]}


def sample(table, columns, order):
    """Columns of a table of the sample database."""
    connection = sqlite3.connect(":memory:")
    connection.executescript((SAMPLES / f"{table}.sql").read_text())
    rows = connection.execute(f"SELECT {', '.join(columns)} FROM {table} ORDER BY {order}").fetchall()
    return {name: [row[i] for row in rows] for i, name in enumerate(columns)}


def published():
    group = Group()
    group.add_data("cement", **cement())
    longley_controls = ["GNPDEFL", "GNP", "UNEMP", "ARMED", "POP", "YEAR"]
    group.add_data("longley", **sample("Longley", longley_controls + ["TOTEMP"], "YEAR"))
    air = sample("Airquality", ["Ozone", "Radiation", "Wind", "Temp"], "Day")
    group.add_data("air", **{name: values[:46] for name, values in air.items()})
    group.tables["f"] = critical_values()

    hald = dict(data="cement", controls=["Aluminate", "Silicate", "Ferrite", "Belite"], y="Heat")
    hald["description"] = "Heat of cement"
    for criterion in ("Nondominated", "MinSsquared", "MaxFValue"):
        for saved in (1, 3, 20):
            group.add(f"cement, optimal, {criterion}, {saved} saved", method="optimal", **hald,
                      options={"OptCriteria": criterion, "ModelsToSave": saved})  # fmt: skip
    group.add("cement, optimal, 0 models asked for", method="optimal", **hald, options={"ModelsToSave": 0})
    group.add("cement, optimal, as a query, 65535 models", method="optimal", component="query", **hald,
              options={"ModelsToSave": 65535, "OptCriteria": "MinSsquared"})  # fmt: skip
    for enter, stay in ((4, 4), (2, 2), (4, 10), (-3, -3), (200, 4), (0.5, 0.1)):
        group.add(f"cement, stepwise, {enter} in, {stay} out", method="stepwise", **hald,
                  options={"FInDefault": float(enter), "FOutDefault": float(stay), "ShowReport": True})  # fmt: skip
    for level in ("1 Percent", "5 Percent", "10 Percent", "95 Percent", "", "7 Percent"):
        group.add(f"cement, stepwise, table, level '{level}'", method="stepwise", ftable="f", **hald,
                  options={"FPercent": level, "FOutDefault": 3.5})  # fmt: skip
    for method in ("backward", "forward"):
        for value in (4.0, -4.0, 0.0, 8.5, 30.0):
            group.add(f"cement, {method}, {value}", method=method, **hald,
                      options={"FDefault": value, "ShowReport": value == 4.0})  # fmt: skip
        for component in ("table", "query"):
            group.add(f"cement, {method}, as a {component}, none leave or enter", method=method, component=component,
                      **hald, options={"FDefault": 1e6})  # fmt: skip
            group.add(f"cement, {method}, as a {component}, critical values", method=method, component=component,
                      ftable="f", **hald)  # fmt: skip
    group.add("cement, backward, loaded but not fitted before", method="backward", before="loaded", **hald)
    for method in SEARCHES:
        group.add(f"cement, {method}, once more", method=method, before="run", **hald)
        group.add(f"cement, {method}, once more, with low thresholds", method=method, before="run", **hald,
                  options={"OptCriteria": "MinSsquared", "ModelsToSave": 2} if method == "optimal" else
                  {"FInDefault": 1.0, "FOutDefault": 1.0} if method == "stepwise" else {"FDefault": 1.0})  # fmt: skip
    group.add("cement, stepwise, as a query", method="stepwise", component="query", **hald)

    labour = dict(data="longley", controls=longley_controls, y="TOTEMP")
    for criterion, saved in (("Nondominated", 5), ("MinSsquared", 4), ("MaxFValue", 2)):
        group.add(f"longley, optimal, {criterion}, {saved} saved", method="optimal", **labour,
                  options={"OptCriteria": criterion, "ModelsToSave": saved})  # fmt: skip
    group.add("longley, stepwise", method="stepwise", **labour)
    group.add("longley, stepwise, critical values", method="stepwise", ftable="f", **labour,
              options={"FPercent": "10 Percent"})  # fmt: skip
    group.add("longley, backward", method="backward", **labour)
    group.add("longley, backward, critical values", method="backward", ftable="f", **labour)
    group.add("longley, forward", method="forward", **labour)
    group.add("longley, forward, low", method="forward", **labour, options={"FDefault": 0.25})

    ozone = dict(data="air", y=response("Ozone", "Log"), description="Ozone in New York")
    ozone["controls"] = ["Radiation", "Temp", control("Inverse", "Wind"), control("Product", "Temp", "Wind"),
                         control("Power", "Temp", exponent="2")]  # fmt: skip
    group.add("air, optimal", method="optimal", **ozone, options={"OptCriteria": "MaxFValue", "ModelsToSave": 6})
    group.add("air, stepwise", method="stepwise", **ozone)
    # Beyond the 20 degrees of freedom of the table the value is that of the row it stands on.
    group.add("air, stepwise, a table that is too short", method="stepwise", ftable="f", **ozone,
              options={"FPercent": "5 Percent"})  # fmt: skip
    group.add("air, backward", method="backward", **ozone)
    group.add("air, backward, as a query, a table that is too short", method="backward", ftable="f", component="query",
              **ozone)  # fmt: skip
    group.add("air, forward", method="forward", **ozone)
    group.add("air, forward, a table that is too short", method="forward", ftable="f", **ozone)
    return group


def edges():
    group = Group()
    methods = ("optimal", "stepwise", "backward", "forward")

    # Two-level designs: every figure is a whole number or a binary fraction, so that equality is equality.
    signs = {"a": [-1, 1, -1, 1, -1, 1, -1, 1], "b": [-1, -1, 1, 1, -1, -1, 1, 1], "c": [-1, -1, -1, -1, 1, 1, 1, 1]}
    half = {name: values[:4] for name, values in signs.items() if name != "c"}
    half["ab"] = [1, -1, -1, 1]
    group.add_data("saturated", y=[1, 7, 4, 2], **half)
    for criterion in ("Nondominated", "MinSsquared", "MaxFValue"):
        for saved in (1, 2, 7):
            group.add(f"as many parameters as records, {criterion}, {saved} saved", "saturated", "optimal",
                      ["a", "b", "ab"], "y", options={"OptCriteria": criterion, "ModelsToSave": saved})  # fmt: skip
    for method in methods[1:]:
        group.add(f"as many parameters as records, {method}", "saturated", method, ["a", "b", "ab"], "y",
                  options={"FDefault": 0.125} if method != "stepwise" else {"FInDefault": 0.125, "FOutDefault": 0.0})  # fmt: skip
    group.add_data("plane", y=[2 + 3 * a - b for a, b in zip(signs["a"], signs["b"])], **signs)
    group.add_data("line", y=[2 + 3 * a for a in signs["a"]], **signs)
    for name, what in (("plane", "an exact fit"), ("line", "an exact fit of one control")):
        for method in methods:
            group.add(f"{what}, {method}", name, method, ["a", "b", "c"], "y",
                      options={"ModelsToSave": 3} if method == "optimal" else {})  # fmt: skip
        group.add(f"{what}, stepwise, all stay", name, "stepwise", ["a", "b", "c"], "y", options={"FOutDefault": 0.0})
    noise = [1, -1, -1, 1, 1, -1, -1, 1]  # orthogonal to all three
    group.add_data("cube", y=[8 + 4 * a + 2 * b + e for a, b, e in zip(signs["a"], signs["b"], noise)], **signs)
    for method in methods[1:]:
        for value in (0.0, 1.0, 2.0, 4.0, 4.8, 5.0):
            group.add(f"cube, {method}, {value}", "cube", method, ["a", "b", "c"], "y",
                      options={"FInDefault": value, "FOutDefault": value} if method == "stepwise"
                      else {"FDefault": value})  # fmt: skip
    group.add_data("pairs", y=[4 * a + e for a, e in zip(signs["a"], noise)], a=signs["a"], b=signs["b"], c=signs["c"])
    # 4 degrees of freedom after the first removal, which is then the statistic: neither above nor below.
    group.add("the statistic equals the threshold, backward", "pairs", "backward", ["a", "b", "c"], "y",
              options={"FDefault": 5.0})  # fmt: skip
    ties = {"a": signs["a"], "b": signs["b"], "c": [0, 1, 0, 0, 1, 0, 0, 2]}
    group.add_data("ties", y=[2 * a + 2 * b + e for a, b, e in zip(signs["a"], signs["b"], noise)], **ties)
    for method in methods:
        group.add(f"two candidates as good, {method}", "ties", method, ["a", "b", "c"], "y")
    group.add_data("equal", y=[1, 2, 4, 3, 5, 7, 6, 9, 8, 12], a=[1, 2, 3, 4, 5, 6, 7, 8, 9, 10],
                   b=[1, 0, 2, 0, 1, 3, 1, 2, 0, 4])  # fmt: skip

    # The same field twice.
    for method in methods:
        group.add(f"the same field twice, {method}", "equal", method, ["a", "b", "a"], "y")
    group.add("the same field under two names, forward", "equal", "forward", ["a", "b", "A"], "y",
              options={"FDefault": 0.01})  # fmt: skip
    group.add("the same field under two names, stepwise", "equal", "stepwise", ["a", "b", "A"], "y",
              options={"FInDefault": 0.01, "FOutDefault": 0.01})  # fmt: skip

    # Gaps before and between the active controls.
    group.add_data("gaps", y=[3, 5, 4, 8, 7, 11, 9, 14, 12, 17], a=[1, 2, 3, 4, 5, 6, 7, 8, 9, 10],
                   b=[2, 1, 4, 3, 6, 5, 9, 7, 8, 12], c=[0, 3, 1, 0, 2, 5, 1, 0, 4, 2],
                   d=[1, 0, 0, 2, 1, 3, 0, 1, 2, 5], e=[0, 0, 1, 0, 4, 1, 0, 2, 1, 1])  # fmt: skip
    off = undefined_control()
    spare = ["Inactive", UNDEFINED, "d", "Datafield2", "1.00", "10"]
    other = ["Inactive", UNDEFINED, "e", "Datafield2", "1.00", "10"]
    for method in methods:
        group.add(f"the second control alone, {method}", "gaps", method, [spare, "a"], "y")
        group.add(f"the first and the fifth control, {method}", "gaps", method, ["a", spare, None, None, "b"], "y",
                  options={"ModelsToSave": 2} if method == "optimal" else {})  # fmt: skip
        group.add(f"the second, fourth and tenth control, {method}", "gaps", method,
                  [spare, "a", other, "b", None, None, None, None, None, "c"], "y")  # fmt: skip
        # Position 1 comes to stand for a control that names no field.
        group.add(f"the second control alone and no field in the first, {method}", "gaps", method, [off, "a"], "y")
        group.add(f"no control at all, {method}", "gaps", method, [], "y", description="nothing")
        group.add(f"no control at all, as a query, {method}", "gaps", method, [], "y", component="query")
        group.add(f"never loaded, {method}", "gaps", method, ["a", "b", "c"], "y", before="nothing")

    # Row 1 and the previous mean square come back while the model is another one: the search goes on, and ends.
    group.add_data("passing", y=[-6, -4, -2, -6, 5, 0, 1, -3, -1], a=[-9, 6, 5, 6, 8, -3, -2, 9, 5],
                   b=[-3, 7, 3, 4, None, 8, 8, 4, 9], c=[None, -2, 8, -3, -6, 4, -7, 5, 0],
                   d=[-6, 8, -3, 5, -5, -7, None, None, 3])  # fmt: skip
    group.add("the same row of terms with another model, stepwise", "passing", "stepwise", ["a", "b", "c", "d"], "y",
              options={"FInDefault": 1.0, "FOutDefault": 1.0})  # fmt: skip

    # Too few records.
    group.add_data("one", y=[1], a=[2], b=[3])
    group.add_data("none", y=[None, None], a=[1, 2], b=[3, 4])
    group.add_data("two", y=[1, 3], a=[0, 2], b=[0, 0])
    group.add_data("constant", y=[5, 5, 5, 5], a=[1, 2, 3, 4], b=[1, 0, 0, 1])
    for method in methods:
        group.add(f"one record, {method}", "one", method, ["a", "b"], "y")
        group.add(f"no usable record, {method}", "none", method, ["a", "b"], "y")
        group.add(f"a constant response, {method}", "constant", method, ["a", "b"], "y")
    for method in methods[1:]:
        group.add(f"two records, {method}", "two", method, ["a", "b"], "y")

    # Each candidate has its own records: constant, or none at all, once nulls are dropped.
    group.add_data("dropping", y=[2, 3, 5, 4, 8, 7, 9, 12], a=[1, 2, 3, 4, 5, 6, 7, 8],
                   b=[None, None, None, None, 1, 1, 1, 1], c=[1, 0, 2, 1, None, None, 3, 1],
                   d=[5, 5, 5, 5, None, None, None, 7])  # fmt: skip
    for method in methods:
        group.add(f"candidates that cannot be loaded, {method}", "dropping", method, ["a", "b", "c", "d"], "y",
                  options={"ModelsToSave": 4} if method == "optimal" else {})  # fmt: skip

    # Tables of critical values that are not as they should be.
    group.tables["empty"] = {"columns": KEY + LEVELS, "rows": []}
    group.tables["without 95 Percent"] = {"columns": KEY + LEVELS[:3],
                                          "rows": [row[:5] for row in critical_values(10)["rows"]]}  # fmt: skip
    group.tables["closed"] = dict(critical_values(10), open=False)
    group.tables["without key"] = dict(critical_values(10), key=False)
    group.tables["text"] = {"columns": KEY + LEVELS, "rows": [[1, d, "a", "b", "c", "many"] for d in range(1, 11)]}
    group.tables["null"] = {"columns": KEY + LEVELS, "rows": [[1, d] + [None] * 4 for d in range(1, 11)]}
    group.tables["other numerator"] = {"columns": KEY + LEVELS, "rows": [[2, d, 9.0, 5.0, 3.0, 5.5] for d in (3, 1, 2)]}
    group.tables["some"] = {"columns": KEY + LEVELS, "rows": [[1, 8, 11.0, 5.3, 3.5, 2.5], [1, 7, 12.0, 5.6, 3.6, 60.0],
                                                              [2, 2, 99.0, 19.0, 9.0, 0.5]]}  # fmt: skip
    for table in list(group.tables):
        for method in methods[1:]:
            group.add(f"table of critical values: {table}, {method}", "gaps", method, ["a", "b", "c"], "y", ftable=table,
                      options={"FPercent": "5 Percent", "FInDefault": 6.0, "FOutDefault": 2.0}
                      if method == "stepwise" else {"FDefault": 2.25})  # fmt: skip
    return group


def random_columns(rng):
    """Some columns of quarters, with nulls, and a response that a few of them go into."""
    wide = rng.random() < 0.1
    records = rng.randint(14, 30) if wide else rng.randint(5, 16)
    names = "abcdefghij"[: rng.randint(7, 10) if wide else rng.randint(1, 6)]
    nulls = rng.choice((0, 0, 0.1, 0.2, 0.35)) / (4 if wide else 1)
    columns = {}
    for name in names:
        kind = rng.random()
        if kind < 0.15:  # two values, so that a few dropped records make it a constant
            values = [float(rng.random() < 0.25) for _ in range(records)]
        elif kind < 0.3 and columns:  # close to another one
            other = columns[rng.choice(sorted(columns))]
            values = [(v if v is not None else 1.0) + rng.randint(-2, 2) / 4 for v in other]
        else:
            values = [rng.randint(-40, 80) / 4 for _ in range(records)]
        columns[name] = [None if rng.random() < nulls else value for value in values]
    weights = {name: rng.choice((0, 0, 0.5, 1, 2, -1.5)) for name in names}
    noise = rng.choice((1, 4, 16))
    columns["y"] = [
        round(4 * (sum(w * (columns[k][i] or 0) for k, w in weights.items()) + rng.gauss(0, noise))) / 4
        for i in range(records)
    ]
    if rng.random() < 0.3:
        columns["y"] = [None if rng.random() < nulls / 2 else value for value in columns["y"]]
    return columns


def random_design(rng):
    """Columns of a two-level design: all figures are exact, and equal ones are common."""
    records = rng.choice((4, 8, 8, 16))
    every = [[(-1) ** (i & j).bit_count() for i in range(records)] for j in range(1, records)]
    picked = rng.sample(every, rng.randint(1, min(5, records - 1)))
    columns = dict(zip("abcde", picked))
    weights = [rng.choice((0, 1, 1, 2)) for _ in picked]
    others = [column for column in every if column not in picked]
    noise = rng.choice(others) if others and rng.random() < 0.8 else [0] * records
    columns["y"] = [4 + n + sum(w * c[i] for w, c in zip(weights, picked)) for i, n in enumerate(noise)]
    return columns


def random_data(rng):
    return random_design(rng) if rng.random() < 0.1 else random_columns(rng)


def random_controls(rng, columns):
    names = [name for name in columns if name != "y"]
    whole = all(isinstance(value, int) for value in columns["y"])  # a design: transformed, it would be none
    gaps = 0.4 if rng.random() < 0.1 else 0.05
    controls = []
    for name in names:
        kind = rng.random()
        if kind < (1 - gaps if whole else 0.8 - gaps):
            controls.append(control("None", name))
        elif kind < 1 - gaps:
            transformation = rng.choice(("Log", "Inverse", "Sqrt", "Power", "Scale", "Product"))
            controls.append(control(transformation, name, rng.choice(names), rng.choice("23"), "4"))
        else:  # a gap
            controls.append(["Inactive", UNDEFINED, name, "Datafield2", "1.00", "10"])
    if rng.random() < 0.1 and len(controls) < CONTROLS:  # the same again
        controls.append(list(controls[rng.randrange(len(controls))]))
    if rng.random() < 0.3:
        rng.shuffle(controls)
    return controls


def random_table(rng):
    rows = []
    for numerator in (1, 2):
        for denominator in range(0, 16):
            if rng.random() < (0.6 if numerator == 1 else 0.1):
                rows.append([numerator, denominator] + [rng.randint(0, 1200) / 100 for _ in LEVELS])
    return {"columns": KEY + LEVELS, "rows": rows}


def random_options(rng, method):
    threshold = lambda: rng.choice((0.0, 0.5, 1.0, 2.0, 4.0, 4.0, 4.0, 7.25, -3.0, 12.5))  # noqa: E731
    if method == "optimal":
        return {"OptCriteria": rng.choice(("Nondominated", "MinSsquared", "MaxFValue")),
                "ModelsToSave": rng.choice((1, 2, 3, 5, 8, 20, 21, 65535))}  # fmt: skip
    options = {"FDefault": threshold()} if method != "stepwise" else {"FInDefault": threshold(),
                                                                      "FOutDefault": threshold()}  # fmt: skip
    if method == "stepwise" and rng.random() < 0.8:
        options["FPercent"] = rng.choice(LEVELS)
    return options


def add_random(group, rng, index, want):
    """Adds runs over data set number `index`, as many as wanted; how many could be told apart from rounding."""
    columns = random_data(rng)
    name = f"random {index}"
    group.add_data(name, **columns)
    added = 0
    for _ in range(want):
        method = rng.choice(("optimal", "stepwise", "stepwise", "backward", "forward"))
        rest = {"options": random_options(rng, method), "component": rng.choice(("table", "table", "query"))}
        if rng.random() < 0.5:
            rest["before"] = rng.choice(("loaded", "nothing", "run", "run"))
        if method != "optimal" and rng.random() < 0.35:
            table = f"f {index} {len(group.runs)}"
            group.tables[table] = random_table(rng)
            rest["ftable"] = table
        y = rng.choice((response("y"), response("y"), response("y"), response("y", "Log"), response("y", "Scale", "8")))
        controls = random_controls(rng, columns)
        if method == "optimal" and len(controls) > 6:
            controls = controls[:6]
        try:
            group.add(f"{name}, {method}", name, method, controls, y, **rest)
            added += 1
        except Delicate:
            pass
    return added


def interesting(run):
    """What a run shows, so that a small set of them can be picked."""
    come_to = run["expected"]
    shown = [run["method"]]
    if come_to.get("ended") == "repeats":
        shown.append("repeats")
    if any(event.get("loaded") == 0 for event in come_to["trace"]):
        shown.append("failed load")
    if any(event["event"] == "check" and event["removed"] for event in come_to["trace"]):
        shown.append("removed again")
    if any(event.get("dof") == 0 for event in come_to["trace"]):
        shown.append("no freedom")
    if len(run["controls"]) != sum(c[1] != UNDEFINED for c in run["controls"]):
        shown.append("gaps")
    if "ftable" in run:
        shown.append("table")
    return tuple(shown)


def some_random():
    """Runs over sixty random data sets, chosen so that what is rare is there too."""
    rng = random.Random(1947)
    group = Group()
    count = {}
    used = set()
    index = 0
    while len(used) < 60:
        index += 1
        before = len(group.runs)
        add_random(group, rng, index, 3)
        kept = []
        for run in group.runs[before:]:
            shown = interesting(run)
            if len(run["expected"]["trace"]) > 90 or count.get(shown, 0) >= (4 if "repeats" in shown else 3):
                continue
            count[shown] = count.get(shown, 0) + 1
            used.add(run["data"])
            kept.append(run)
        group.runs[before:] = kept
    return group


FIXTURES = {"published.json": published, "edges.json": edges, "random.json": some_random}


def main():
    parser = argparse.ArgumentParser(description="Makes the fixtures of the selection tests.")
    parser.add_argument("--check", action="store_true", help="compare with the fixtures that are there")
    parser.add_argument("--random", type=int, metavar="N", help="N runs over random data, into FILE")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("file", nargs="?")
    arguments = parser.parse_args()
    if arguments.random:
        rng = random.Random(arguments.seed)
        group = Group()
        index = 0
        while len(group.runs) < arguments.random:
            index += 1
            add_random(group, rng, index, 2)
        Path(arguments.file).write_text(group.text())
        return 0
    status = 0
    for name, make in FIXTURES.items():
        text = make().text()
        if not arguments.check:
            (FIXTURES_DIRECTORY / name).write_text(text)
        elif not same(json.loads((FIXTURES_DIRECTORY / name).read_text()), json.loads(text)):
            print(f"{name} is not what {Path(__file__).name} makes", file=sys.stderr)
            status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())
