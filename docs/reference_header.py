#!/usr/bin/env python3
"""Prints a public header as the reference takes it: reference_header.py HEADER

Doxygen does not put what a header includes in its place. So the table of status codes is written out here, each code
with its message.
"""

import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
ROW = re.compile(r'^ZORVAN_IPP_STATUS\((-?\d+), (\w+), "(.*)"\)$', re.M)

with open(sys.argv[1], encoding="utf-8") as header:
    text = header.read()
for include in re.findall(r'^#include "(.*\.def)"\n', text, re.M):
    with open(os.path.join(ROOT, include), encoding="utf-8") as table:
        rows = "".join(f"  {name} = {code},  ///< {message}\n" for code, name, message in ROW.findall(table.read()))
    text = text.replace(f'#include "{include}"\n', rows)
print(text, end="")
