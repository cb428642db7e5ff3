# SPDX-License-Identifier: MIT
# python3 bench/records.py DATABASE: a fit of every record of table data, in chunks that fetchmany gives to numpy, by
# the normal equations of what the chunks add up to.
import sqlite3
import sys

import numpy

cursor = sqlite3.connect(sys.argv[1]).execute("SELECT x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, y FROM data")
products = numpy.zeros((12, 12))
while chunk := cursor.fetchmany(20000):
    columns = numpy.column_stack([numpy.ones(len(chunk)), numpy.array(chunk)])
    products += columns.T @ columns
for coefficient in numpy.linalg.solve(products[:11, :11], products[:11, 11]):
    print("%.15g" % coefficient)
