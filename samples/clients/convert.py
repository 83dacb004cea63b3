"""Wandelt die Berichte eines Ordners um (mit dem Paket pywin32).

Aufruf: python convert.py DIFFERENZORDNER BERICHTSORDNER
Python muss so viele Bits haben wie die registrierte Tessary.dll.
"""
import sys

import win32com.client


def main(arguments):
    if len(arguments) != 2:
        print("Aufruf: python convert.py DIFFERENZORDNER BERICHTSORDNER", file=sys.stderr)
        return 2
    manager = win32com.client.Dispatch("Tessary.BXConvertLLMgr")
    done = manager.ConvertReports(arguments[0], arguments[1], "")
    for entry in manager.Errors:
        print(f"{entry.Source}: {entry.Text} ({entry.Number & 0xFFFFFFFF:08X})")
    print(f"{manager.CountCorrectReports} Umwandlungen gelungen")
    if not done:
        print("Nicht alle Umwandlungen sind gelungen.")
    return 0 if done else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
