#!/usr/bin/python3
"""Prints a workbook as the tests read it back through openpyxl:
    SHEET <TAB> names joined by ","
    CHARTS <TAB> number of charts on the sheet
    CELL <TAB> ref <TAB> value <TAB> format key (border, number format, font size)
for the named sheet (argv[2]); every cell with a value or a border."""
import sys

from openpyxl import load_workbook

wb = load_workbook(sys.argv[1])
ws = wb[sys.argv[2]]
print("SHEET\t" + ",".join(wb.sheetnames))
print("CHARTS\t%d" % len(ws._charts))
for row in ws.iter_rows():
    for c in row:
        key = "%s|%s|%s" % (c.border.left.style, c.number_format, c.font.sz)
        if c.value is None and c.border.left.style is None:
            continue
        value = "" if c.value is None else str(c.value)
        print("CELL\t%s\t%s\t%s" % (c.coordinate, value.replace("\t", " ").replace("\n", " "), key))
