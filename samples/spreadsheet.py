"""Spreadsheet files from rows of values, with the standard library alone.

Two forms: the zipped workbook of today's spreadsheet programs, for the reports, and the older one-file XML form, small
enough to stand in an SQL script, for the companies' statements. The same rows always give the same bytes.
"""

import io
import struct
import zipfile
from xml.sax.saxutils import escape

_TYPES = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">\
<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>\
<Default Extension="xml" ContentType="application/xml"/>\
<Override PartName="/xl/workbook.xml" \
ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/>\
<Override PartName="/xl/worksheets/sheet1.xml" \
ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>\
<Override PartName="/xl/styles.xml" \
ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml"/>\
</Types>"""
_RELATIONS = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">\
<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" \
Target="xl/workbook.xml"/></Relationships>"""
_WORKBOOK = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" \
xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">\
<sheets><sheet name="{name}" sheetId="1" r:id="rId1"/></sheets></workbook>"""
_WORKBOOK_RELATIONS = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">\
<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" \
Target="worksheets/sheet1.xml"/>\
<Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" \
Target="styles.xml"/></Relationships>"""
# Cell formats: 0 plain, 1 title, 2 heading, 3 amount, 4 total.
_STYLES = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">\
<fonts count="3"><font><sz val="11"/></font><font><b/><sz val="16"/></font><font><b/><sz val="11"/></font></fonts>\
<fills count="3"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/></fill>\
<fill><patternFill patternType="solid"><fgColor rgb="FFDDEBF7"/></patternFill></fill></fills>\
<borders count="2"><border/><border><top style="thin"/></border></borders>\
<cellStyleXfs count="1"><xf/></cellStyleXfs>\
<cellXfs count="5"><xf xfId="0"/><xf xfId="0" fontId="1" applyFont="1"/>\
<xf xfId="0" fontId="2" fillId="2" applyFont="1" applyFill="1"/><xf xfId="0" numFmtId="4" applyNumberFormat="1"/>\
<xf xfId="0" numFmtId="4" fontId="2" borderId="1" applyNumberFormat="1" applyFont="1" applyBorder="1"/></cellXfs>\
</styleSheet>"""
_TITLE, _HEADING, _AMOUNT, _TOTAL = 1, 2, 3, 4


def _cell(row, column, value, style):
    place = f"{chr(ord('A') + column)}{row}"
    if isinstance(value, str) and value.startswith("="):
        formula, cached = value[1:].split("|")
        return f'<c r="{place}" s="{style}"><f>{escape(formula)}</f><v>{cached}</v></c>'
    if isinstance(value, (int, float)):
        return f'<c r="{place}" s="{style}"><v>{value + 0.0:.10g}</v></c>'
    return f'<c r="{place}" s="{style}" t="inlineStr"><is><t>{escape(value)}</t></is></c>' if value else ""


def _sheet(title, unit, headings, rows):
    lines = [(1, [title], _TITLE), (2, [unit], 0), (4, headings, _HEADING)]
    for number, row in enumerate(rows, 5):
        total = any(isinstance(value, str) and value.startswith("=") for value in row)
        lines.append((number, row, _TOTAL if total else _AMOUNT))
    body = ""
    for number, values, style in lines:
        cells = (_cell(number, column, value, style if style != _AMOUNT or not isinstance(value, str) else 0)
                 for column, value in enumerate(values))
        body += f'<row r="{number}">{"".join(cells)}</row>'
    return ('<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
            '<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">'
            '<cols><col min="1" max="1" width="30" customWidth="1"/>'
            '<col min="2" max="9" width="18" customWidth="1"/></cols>'
            f"<sheetData>{body}</sheetData></worksheet>")


def with_totals(rows, label, first=5):
    """The rows with one more that sums every column of amounts, as a formula that carries its value."""
    total = [label]
    for column in range(1, len(rows[0])):
        values = [row[column] for row in rows]
        letter = chr(ord("A") + column)
        if all(isinstance(value, (int, float)) for value in values):
            total.append(f"=SUM({letter}{first}:{letter}{first + len(rows) - 1})|{round(sum(values), 2)}")
        else:
            total.append("")
    return rows + [total]


def workbook(title, unit, headings, rows):
    """A zipped workbook of one sheet: title, unit, headings and rows; a text "=F|V" is a formula F of value V."""
    parts = [("[Content_Types].xml", _TYPES), ("_rels/.rels", _RELATIONS),
             ("xl/workbook.xml", _WORKBOOK.format(name=escape(title)[:31])),
             ("xl/_rels/workbook.xml.rels", _WORKBOOK_RELATIONS), ("xl/styles.xml", _STYLES),
             ("xl/worksheets/sheet1.xml", _sheet(title, unit, headings, rows))]
    file = io.BytesIO()
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, text in parts:
            entry = zipfile.ZipInfo(name, (2025, 1, 1, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, text)
    return file.getvalue()


def parts_of(workbook_bytes):
    """What a workbook holds, apart from how it was packed: two packings of the same parts are the same document."""
    with zipfile.ZipFile(io.BytesIO(workbook_bytes)) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def statement(title, company, headings, rows):
    """The one-file XML form, as bytes."""
    def cell(value):
        kind = "Number" if isinstance(value, (int, float)) else "String"
        return f'<Cell><Data ss:Type="{kind}">{escape(str(value))}</Data></Cell>'

    lines = [[title], [company], headings] + rows
    body = "".join(f'<Row>{"".join(map(cell, line))}</Row>' for line in lines)
    return ('<?xml version="1.0"?><?mso-application progid="Excel.Sheet"?>'
            '<Workbook xmlns="urn:schemas-microsoft-com:office:spreadsheet" '
            'xmlns:ss="urn:schemas-microsoft-com:office:spreadsheet">'
            f'<Worksheet ss:Name="{escape(title)}"><Table>{body}</Table></Worksheet></Workbook>').encode("utf-8")


def variant_table(rows):
    """A table as the record of a two-dimensional array of variants with bounds from 1: texts and doubles.

    Little-endian; the last dimension's count and lower bound come first, and the first index varies fastest.
    """
    record = struct.pack("<HH", 0x2000 | 12, 2)
    record += struct.pack("<ii", len(rows[0]), 1) + struct.pack("<ii", len(rows), 1)
    for column in range(len(rows[0])):
        for row in rows:
            value = row[column]
            if isinstance(value, str):
                text = value.encode("gbk")
                record += struct.pack("<HH", 8, len(text)) + text
            else:
                record += struct.pack("<Hd", 5, float(value))
    return record
