#!/usr/bin/env python3
"""Makes scattering_factors.txt from the atomic scattering library of CCP4.

Usage: derive_scattering_factors.py [atomsf.lib] > scattering_factors.txt

atomsf.lib is the one of libccp4 (Debian package libccp4-data, by default
/usr/share/ccp4/atomsf.lib). This was run once; neither the library nor its build needs that file.

Its numbers are six-digit values that have been through single precision (57.799698 stands for
57.7997), so six significant digits are kept. Deuterium, the valence states Cv and Siv, Pm3+ and the
two-Gaussian entries at the end are left out.
"""
import re
import sys

HEADER = """\
# X-ray scattering factors of atoms and ions: f(s) = sum of ai exp(-bi s^2) + c, s = sin(theta) /
# lambda in 1/Angstrom.
#
# Origin: the Cromer-Mann coefficients of the International Tables for Crystallography, Volume C,
# table 6.1.1.4, derived by data/derive_scattering_factors.py from atomsf.lib of libccp4 (CCP4
# project, https://www.ccp4.ac.uk), which is distributed under the GNU Lesser General Public
# License, version 3; so is this file.
#
# One row an atom or ion; electrons is z - charge but for U6+, which is kept at 84. The order
# matters: it decides which row an unlisted charge falls back on.
"""

# The order of the rows, by the identifiers of atomsf.lib.
ORDER = """
H H-1 He Li+1 Li Be+2 Be B C N O-1 O F F-1 Ne Na+1 Na Mg+2 Mg Al+3 Al Si+4 Si P S Cl-1 Cl Ar K+1 K
Ca Ca+2 Sc+3 Sc Ti+2 Ti+3 Ti+4 Ti V+3 V V+5 V+2 Cr+2 Cr+3 Cr Mn+4 Mn+2 Mn Mn+3 Fe+3 Fe+2 Fe Co+2
Co+3 Co Ni+2 Ni Ni+3 Cu+1 Cu Cu+2 Zn Zn+2 Ga+3 Ga Ge Ge+4 As Se Br Br-1 Kr Rb+1 Rb Sr+2 Sr Y+3 Y
Zr+4 Zr Nb+5 Nb Nb+3 Mo+6 Mo+3 Mo+5 Mo Tc Ru+3 Ru+4 Ru Rh+3 Rh Rh+4 Pd Pd+2 Pd+4 Ag+2 Ag+1 Ag Cd+2
Cd In In+3 Sn+4 Sn Sn+2 Sb+3 Sb Sb+5 Te I I-1 Xe Cs+1 Cs Ba+2 Ba La+3 La Ce Ce+3 Ce+4 Pr+3 Pr Pr+4
Nd+3 Nd Pm Sm Sm+3 Eu+2 Eu+3 Eu Gd+3 Gd Tb+3 Tb Dy+3 Dy Ho Ho+3 Er Er+3 Tm+3 Tm Yb+2 Yb Yb+3 Lu+3
Lu Hf Hf+4 Ta+5 Ta W+6 W Re Os+4 Os Ir Ir+3 Ir+4 Pt+4 Pt Pt+2 Au+1 Au+3 Au Hg+1 Hg+2 Hg Tl+1 Tl
Tl+3 Pb+4 Pb+2 Pb Bi+5 Bi Bi+3 Po At Rn Fr Ra+2 Ra Ac Ac+3 Th+4 Th Pa U+6 U+3 U+4 U Np+3 Np Np+4
Np+6 Pu+3 Pu+4 Pu Pu+6 Am Cm Bk Cf
""".split()
ELECTRONS = {"U+6": 84}


def read_library(path):
    """The first entry of each identifier: its numbers in the order Z, electrons, c, a1-a4, b1-b4."""
    with open(path, encoding="ascii") as lines:
        lines = [line.strip() for line in lines if line.strip() and not line.startswith("AD")]
    entries = {}
    for start in range(0, len(lines), 5):
        numbers = [float(word) for line in lines[start + 1:start + 4] for word in line.split()]
        entries.setdefault(lines[start], numbers)
    return entries


def main():
    library = read_library(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/ccp4/atomsf.lib")
    print(HEADER)
    print("#  z charge electrons" + "".join(f"{name:>10}" for name in
                                            "a1 b1 a2 b2 a3 b3 a4 b4 c".split()))
    for identifier in ORDER:
        z, electrons, c, *ab = library[identifier]
        charge = int(re.fullmatch(r"[A-Za-z]+([+-]\d)?", identifier)[1] or 0)
        assert z - charge == electrons, identifier
        coefficients = [ab[i // 2 + 4 * (i % 2)] for i in range(8)] + [c]
        print(f"{z:4.0f} {charge:6d} {ELECTRONS.get(identifier, int(electrons)):9d}" +
              "".join(f"{value:10.6g}" for value in coefficients))


if __name__ == "__main__":
    main()
