#!/usr/bin/env python3
"""Makes space_groups.txt from the symmetry operator library of CCP4.

Usage: derive_space_groups.py [symop.lib] > space_groups.txt

symop.lib is the one of libccp4 (Debian package libccp4-data, by default /usr/share/ccp4/symop.lib).
This was run once; neither the library nor its build needs that file. What differs from it stands in
the tables below. Every operator list is checked to be a block of operators that is repeated for the
centring vectors of the group's letter, and is written as that block and the vectors.
"""
import re
import sys
from fractions import Fraction

HEADER = """\
# Space groups and their settings, with the symmetry operators of each.
#
# Origin: derived by data/derive_space_groups.py from symop.lib of libccp4 (CCP4 project,
# https://www.ccp4.ac.uk), which is distributed under the GNU Lesser General Public License,
# version 3; so is this file.
#
# A group is one line with its number, short name, long name in quotes and crystal system, then one
# indented line for each operator of its first block, as a general position, then one line
# "+ x,y,z" for each centring vector. The full list of operators is the first block, followed by the
# block with the first vector added (modulo 1), and so on. The order of the groups matters: of two
# that share a number or a name, the first is found.
#
# Rows that differ from the origin: the second row of number 2; 5 "I 1 2 1", 14 "P 1 21/n 1" and
# 3004, which are 4005, 2014 and 5005 there; names of 1003, 2005 and 1059; the centring vector of
# 1008, which here is (1/2, 1/2, 0). 1023 is no repeated block and has its eight operators in full.
"""

# The rows that stand beside a standard number: (number, short name, long name, entry it is from).
BESIDE = {
    2: (2, "P-1", "P 1-", 2),
    5: (5, "I2", "I 1 2 1", 4005),
    14: (14, "P21/n", "P 1 21/n 1", 2014),
}
# Hexagonal axes have the standard number, rhombohedral axes follow directly.
RHOMBOHEDRAL = (146, 148, 155, 160, 161, 166, 167)
# The settings behind the standard groups, in table order; 3014 is left out.
SETTINGS = (1003, 1004, 3004, 1005, 2005, 3005, 1006, 1007, 1008, 1009, 1010, 1011, 1012, 1013,
            1014, 1015, 1017, 2017, 1018, 2018, 3018, 1020, 1021, 1022, 1023, 1059, 1094, 1197)
RENAMED = {
    1003: ("P2", "P 1 1 2", 1003),
    3004: ("I21", "I 1 21 1", 5005),
    2005: ("A2", "A 2 1 1", 2005),
    1059: ("Pmmn2", "P 21/m 21/m 2/n", 1059),
}
WITHOUT_BLOCKS = (1023,)

H = Fraction(1, 2)
T = Fraction(1, 3)
CENTRING = {
    "A": [(0, H, H)],
    "B": [(H, 0, H)],
    "C": [(H, H, 0)],
    "I": [(H, H, H)],
    "F": [(0, H, H), (H, 0, H), (H, H, 0)],
    "H": [(2 * T, T, T), (T, 2 * T, 2 * T)],
    "P": [],
    "R": [],
}
OTHER_CENTRING = {1008: [(H, H, 0)]}


def parse_operator(text):
    """Three pairs of a rotation row and a translation, from a general position."""
    parts = []
    for part in text.lower().replace(" ", "").split(","):
        row, shift, used = [0, 0, 0], Fraction(0), ""
        for match in re.finditer(r"([+-]?)(\d+/\d+|[xyz])", part):
            sign = -1 if match[1] == "-" else 1
            if match[2] in "xyz":
                row["xyz".index(match[2])] += sign
            else:
                shift += sign * Fraction(match[2])
            used += match[0]
        assert used == part, text
        parts.append((tuple(row), shift % 1))
    assert len(parts) == 3, text
    return tuple(parts)


def write_operator(operator):
    parts = []
    for row, shift in operator:
        text = "".join(("+" if k > 0 else "-") + axis for k, axis in zip(row, "xyz") if k)
        parts.append(text.lstrip("+") + (f"+{shift}" if shift else ""))
    return ",".join(parts)


def read_library(path):
    """Entries by number: short name, long name, crystal system, operators."""
    entries = {}
    entry = None
    with open(path, encoding="ascii") as lines:
        for line in lines:
            head = re.match(r"(\d+)\s+(\d+)\s+\d+\s+(\S+)\s+\S+\s+(\S+)\s+'([^']*)'", line)
            if head:
                entry = {"count": int(head[2]), "short": head[3], "system": head[4].lower(),
                         "long": head[5], "operators": []}
                assert entries.setdefault(int(head[1]), entry) is entry
            elif line.strip():
                entry["operators"].append(parse_operator(line.strip()))
    for number, entry in entries.items():
        assert len(entry["operators"]) == entry["count"], number
    return entries


def first_block(number, letter, operators):
    """The operators before the first centring vector is added, and the vectors."""
    if number in WITHOUT_BLOCKS:
        return operators, []
    vectors = CENTRING[letter]
    block = operators[:len(operators) // (len(vectors) + 1)]
    expected = list(block)
    for vector in vectors:
        expected += [tuple((row, (shift + v) % 1) for (row, shift), v in zip(operator, vector))
                     for operator in block]
    assert expected == operators, number
    return block, OTHER_CENTRING.get(number, vectors)


def main():
    library = read_library(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/ccp4/symop.lib")
    rows = []

    def add(number, short=None, long=None, source=None):
        entry = library[source or number]
        rows.append((number, short or entry["short"], long or entry["long"], entry))

    for number in range(1, 231):
        add(number)
        if number in BESIDE:
            add(*BESIDE[number])
        if number in RHOMBOHEDRAL:
            add(1000 + number)
    for number in SETTINGS:
        add(number, *RENAMED.get(number, ()))

    print(HEADER, end="")
    for number, short, long, entry in rows:
        print(f'\n{number} {short} "{long}" {entry["system"]}')
        block, vectors = first_block(number, entry["long"][0], entry["operators"])
        for operator in block:
            print(f"  {write_operator(operator)}")
        for vector in vectors:
            print(f"  + {','.join(map(str, vector))}")


if __name__ == "__main__":
    main()
