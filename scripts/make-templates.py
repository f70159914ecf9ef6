#!/usr/bin/python3
"""Builds the spreadsheet report templates of src/resources/Excel.

Run with Debian's interpreter (python3-openpyxl):
    /usr/bin/python3 scripts/make-templates.py [OUT_DIR]

Each template holds the sheet the program fills: the title cell, the header
block, the column captions, the widths, and one record row whose format the
program copies to every further row.  The program writes values only, so a
template edited in a spreadsheet program changes every later report.
"""
import os
import sys

from openpyxl import Workbook
from openpyxl.chart import BarChart, Reference
from openpyxl.styles import Alignment, Border, Font, PatternFill, Side
from openpyxl.utils import get_column_letter

THIN = Side(style="thin")
BOX = Border(left=THIN, right=THIN, top=THIN, bottom=THIN)
HEAD_FILL = PatternFill("solid", fgColor="DDEBF7")
CENTER = Alignment(horizontal="center", vertical="center")
FONT = "맑은 고딕"

EVENT_HEAD = [("A2", "시작일"), ("D2", "종료일"), ("A3", "자동차 코드"), ("D3", "운전원 코드")]
SWAPPED_HEAD = [("A2", "자동차 코드"), ("C2", "운전원 코드"), ("A3", "시작일"), ("C3", "종료일")]


def groups(first_col, row, captions, count):
    """Captions of `count` groups side by side from column first_col; a
    None leaves its cell to the group head of another row."""
    cells = []
    for g in range(count):
        for i, text in enumerate(captions):
            if text is not None:
                cells.append((get_column_letter(first_col + g * len(captions) + i) + str(row), text))
    return cells


# name: sheet, title, captions {cell: text}, record row, columns, widths,
#       header block, number formats of the record row {column: format}
TEMPLATES = {
    "overspeed.XLTX": ("list", "과속 상황 분석",
        dict([("A4", "운행일")] + groups(2, 4, ["과속", None], 6) + groups(2, 5, ["시간", "속도(Km/h)"], 6)),
        6, 13, 11, EVENT_HEAD, {}),
    "longover.XLTX": ("list", "장기 과속 분석",
        dict([("A4", "운행일")] + groups(2, 4, ["과속시작시간", "과속종료시간", "지속시간"], 3)),
        5, 10, 12, EVENT_HEAD, {}),
    "idle.XLTX": ("list", "IDLE 분석",
        dict([("A4", "운행일")] + groups(2, 4, ["IDLE 시작시간", "IDLE 종료시간", "지속시간"], 3)),
        5, 10, 12, EVENT_HEAD, {}),
    "bat.XLTX": ("list", "속도/RPM/Batt 출력",
        {"A4": "운행일", "B4": "시간", "C4": "속도", "D4": "RPM", "E4": "거리", "F4": "IDLE", "G4": "장치작동"},
        5, 7, 11, EVENT_HEAD, {5: "##0.0"}),
    "brake.xltx": ("list", "급제동 분석",
        {"A4": "운행일", "B4": "제동 시각", "C4": "제동전 속도", "D4": "제동후 속도"},
        5, 4, 14, SWAPPED_HEAD, {}),
    "quick_speed.xltx": ("list", "급가속 분석",
        {"A4": "운행일", "B4": "시간", "C4": "직전속도", "D4": "직후속도"},
        5, 4, 14, SWAPPED_HEAD, {}),
    "driverday1.xltx": ("list", "일자별 운전원 운행 상황 집계",
        {"A4": "운행일", "B4": "자동차", "C4": "운행 내역", "G4": "과속 시간", "J4": "운행 실태", "P4": "평점",
         "C5": "시작 시각", "D5": "종료 시각", "E5": "주행 거리", "G5": "1~10Km/h 초과(분)",
         "H5": "11~19Km/h 초과(분)", "I5": "20Km/h 이상 초과(분)",
         "J5": "과속", "K5": "급가속", "L5": "급제동", "M5": "장기과속", "N5": "IDLE", "O5": "IDLE 시간"},
        6, 16, 10, [("A2", "시작일"), ("D2", "종료일"), ("A3", "운전원 코드")], {5: "#,##0.0"}),
    "drivertotal1.xltx": ("list", "운전원별 운행 상황 총괄표",
        {"A4": "운전원 코드", "B4": "운전원명", "C4": "근무일", "D4": "운행 시간", "E4": "주행 거리",
         "F4": "과속", "G4": "급가속", "H4": "급제동", "I4": "장기과속", "J4": "IDLE", "K4": "IDLE 시간",
         "L4": "1~10Km/h 초과(분)", "M4": "11~19Km/h 초과(분)", "N4": "20Km/h 이상 초과(분)", "O4": "평점", "P4": "최종운행일", "Q4": "최종운행시간", "R4": "비고"},
        5, 18, 10, [("A2", "시작일"), ("D2", "종료일")], {5: "#,##0.0"}),
    "speedrate.xltx": ("list", "운전원 운행 속도별 집계표",
        dict([("A4", "속도"), ("A5", "시간(분)"), ("A6", "거리(km)")]
             + [(get_column_letter(2 + i) + "4", "%d~%d" % (i * 10, i * 10 + 9)) for i in range(10)]
             + [("L4", "100~")]),
        5, 12, 9, [("A2", "시작일"), ("D2", "종료일"), ("A3", "운전원 코드")], {}),
    "carday.xltx": ("list", "일자별 차량 운행 상황 집계",
        {"A4": "운행일", "B4": "운전원 코드", "C4": "운행 내역", "F4": "운행 실태", "K4": "평점",
         "C5": "시작 시각", "D5": "종료 시각", "E5": "주행 거리", "F5": "과속", "G5": "급가속",
         "H5": "급제동", "I5": "장기과속", "J5": "IDLE"},
        6, 11, 11, [("A2", "시작일"), ("D2", "종료일"), ("A3", "자동차 코드")], {5: "#,##0.0"}),
    "carday1.xltx": ("list", "일자별 차량별 운행상황 집계",
        {"A4": "운행일", "B4": "자동차 코드", "C4": "운행 내역", "F4": "운행 실태", "K4": "평점",
         "C5": "시작 시각", "D5": "종료 시각", "E5": "주행 거리", "F5": "과속", "G5": "급가속",
         "H5": "급제동", "I5": "장기과속", "J5": "IDLE"},
        6, 11, 11, [("A2", "시작일"), ("D2", "종료일")], {5: "#,##0.0"}),
    "cartotal.xltx": ("list", "차량별 운행 상황 총괄표",
        {"A4": "자동차 코드", "B4": "차량번호", "C4": "근무일", "D4": "운행 시간", "E4": "주행 거리",
         "F4": "과속", "G4": "급가속", "H4": "급제동", "I4": "장기과속", "J4": "IDLE", "K4": "IDLE 시간",
         "L4": "평점", "M4": "최종운행일", "N4": "최종운행시간"},
        5, 14, 11, [("A2", "시작일"), ("D2", "종료일")], {5: "#,##0.0"}),
    "carcondition.xltx": ("condition", "월간운행실태(차량)",
        {"A4": "순위", "B4": "자동차 코드", "C4": "차량번호", "D4": "10Km/h이내", "E4": "20Km/h이내",
         "F4": "30Km/h이내", "G4": "과속", "H4": "급가속", "I4": "급제동", "J4": "장기과속",
         "K4": "IDLE", "L4": "IDLE시간", "M4": "평균 평점"},
        5, 13, 11, [("A2", "년/월")], {}),
    "day_fuel.xltx": ("condition", "일일소모량조회",
        {"A4": "순위", "B4": "자동차 코드", "C4": "운전원 코드", "D4": "주행거리(km)",
         "E4": "연료소모량(liter)", "F4": "과소모량(liter)", "G4": "연비(km/liter)"},
        5, 7, 16, [("A2", "일자")], {4: "#0.0", 5: "#0.00", 6: "#0.00", 7: "#0.000"}),
    "daystatus2.xltx": ("condition", "일일운행실태",
        {"A4": "자동차 코드", "B4": "운행", "C4": "날짜", "D4": "운전원 코드", "E4": "과속",
         "F4": "급가속", "G4": "급제동", "H4": "장기과속"},
        5, 8, 12, [("A2", "자동차 코드")], {}),
    "daydr.xltx": ("condition", "일일운행정보",
        {"A4": "차량코드", "B4": "운전시작일시", "C4": "운전종료일시", "D4": "운행거리"},
        5, 4, 20, [("A2", "운행일")], {4: "#,##0.0"}),
    "daystatus.xltx": ("condition", "일일운행실태",
        {"A4": "순위", "B4": "자동차 코드", "C4": "운전원 코드", "D4": "시작 시각", "E4": "종료 시각",
         "F4": "과속", "G4": "급제동", "H4": "급가속", "I4": "장기과속", "J4": "Idle", "K4": "평점",
         "L4": "주행거리"},
        5, 12, 11, [("A2", "일자")], {12: "#,##0.0"}),
}


def build(name, layout, out_dir):
    sheet, title, captions, record_row, columns, width, header, formats = layout
    wb = Workbook()
    ws = wb.active
    ws.title = sheet
    ws["A1"] = title
    ws["A1"].font = Font(name=FONT, size=16, bold=True)
    for cell, text in header:
        ws[cell] = text
        ws[cell].font = Font(name=FONT, size=10, bold=True)
    for c in range(1, columns + 1):
        ws.column_dimensions[get_column_letter(c)].width = width
        for r in range(4, record_row):
            cell = ws.cell(row=r, column=c)
            cell.font = Font(name=FONT, size=10, bold=True)
            cell.fill = HEAD_FILL
            cell.border = BOX
            cell.alignment = CENTER
        rec = ws.cell(row=record_row, column=c)
        rec.font = Font(name=FONT, size=10)
        rec.border = BOX
        rec.alignment = CENTER
        if c in formats:
            rec.number_format = formats[c]
    for cell, text in captions.items():
        ws[cell] = text
    if name.startswith("speedrate"):
        # The distance row of the speed classes, drawn as bars: filling the
        # cells fills the chart.
        for c in range(1, columns + 1):
            ws.cell(row=6, column=c).border = BOX
            ws.cell(row=6, column=c).alignment = CENTER
        chart = BarChart()
        chart.title = title
        data = Reference(ws, min_col=1, max_col=12, min_row=5, max_row=6)
        chart.add_data(data, from_rows=True, titles_from_data=True)
        chart.set_categories(Reference(ws, min_col=2, max_col=12, min_row=4, max_row=4))
        chart.width, chart.height = 24, 9
        ws.add_chart(chart, "B8")
    # Printed on one page width, landscape.
    ws.page_setup.orientation = "landscape"
    ws.page_setup.paperSize = ws.PAPERSIZE_A4
    ws.sheet_properties.pageSetUpPr.fitToPage = True
    ws.page_setup.fitToWidth = 1
    ws.page_setup.fitToHeight = 0
    wb.template = True
    wb.save(os.path.join(out_dir, name))


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    out_dir = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "src", "resources", "Excel")
    os.makedirs(out_dir, exist_ok=True)
    for name, layout in TEMPLATES.items():
        build(name, layout, out_dir)


if __name__ == "__main__":
    main()
