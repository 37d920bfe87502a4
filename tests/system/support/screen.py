"""A terminal emulator: what a person would see of a program's output."""
import re
import unicodedata

SEQUENCE = re.compile(r"\x1b\[([?0-9;]*)([@-~])")


def width(character):
    if unicodedata.combining(character) or unicodedata.category(character) in ("Mn", "Me", "Cf"):
        return 0
    return 2 if unicodedata.east_asian_width(character) in "WF" else 1


class Row:
    """Cells; the second cell of a wide character holds an empty text. `continues`: its text goes
    on in the next row because it reached the edge."""

    def __init__(self, columns):
        self.cells = [" "] * columns
        self.continues = False

    def text(self):
        return "".join(self.cells).rstrip(" ")


class Screen:
    """Enough of ECMA-48 for programs that write lines and redraw the last ones. With `reflows` a
    change of width wraps the rows anew, as most terminals do; else it cuts them."""

    def __init__(self, columns=80, lines=24, reflows=True):
        self.columns, self.lines, self.reflows = columns, lines, reflows
        self.rows = [Row(columns)]
        self.top = self.row = self.column = 0
        self.wraps = self.shows_cursor = True
        self.unknown = []
        self._pending = ""

    def text(self):
        """The visible part, without empty lines at its end."""
        rows = [row.text() for row in self.rows[self.top:self.top + self.lines]]
        while rows and not rows[-1]:
            rows.pop()
        return rows

    def everything(self):
        return [row.text() for row in self.rows[:self.top]] + self.text()

    def feed(self, text):
        text = self._pending + text
        self._pending = ""
        at = 0
        while at < len(text):
            if text[at] == "\x1b":
                match = SEQUENCE.match(text, at)
                if not match:
                    if len(text) - at < 16:
                        self._pending = text[at:]
                        return
                    self.unknown.append(repr(text[at:at + 16]))
                    at += 1
                    continue
                self._control(*match.groups())
                at = match.end()
                continue
            self._character(text[at])
            at += 1

    def _character(self, character):
        if character == "\r":
            self.column = 0
        elif character == "\n":
            self._down()
        elif ord(character) < 32 or 127 <= ord(character) < 160:
            self.unknown.append(repr(character))
        else:
            self._put(character)

    def _down(self):
        self.row += 1
        if self.row == len(self.rows):
            self.rows.append(Row(self.columns))
        self.top = max(self.top, self.row - self.lines + 1)

    def _put(self, character):
        cells = width(character)
        if cells == 0:
            return
        if self.column + cells > self.columns:
            if not self.wraps:
                self.column = self.columns - cells
            else:
                self.rows[self.row].continues = True
                self.column = 0
                self._down()
        row = self.rows[self.row].cells
        row[self.column] = character
        if cells == 2:
            row[self.column + 1] = ""
        self.column += cells

    def _control(self, parameters, final):
        number = int(parameters) if parameters.isdigit() else 1
        if final == "A":
            self.row = max(self.top, self.row - number)
        elif final == "G":
            self.column = min(number, self.columns) - 1
        elif final in "JK":
            row = self.rows[self.row]
            row.cells[self.column:] = [" "] * (self.columns - min(self.column, self.columns))
            row.continues = False
            if final == "J":
                del self.rows[self.row + 1:]
        elif final in "hl" and parameters == "?7":
            self.wraps = final == "h"
        elif final in "hl" and parameters == "?25":
            self.shows_cursor = final == "h"
        elif final != "m":
            self.unknown.append(parameters + final)

    def resize(self, columns, lines):
        if columns != self.columns:
            self._rewrap(columns)
        self.columns, self.lines = columns, lines
        self.top = max(min(self.top, self.row), self.row - lines + 1, 0)
        del self.rows[self.top + lines:]

    def _rewrap(self, columns):
        rows, marks = [], {}
        whole = []
        for index, row in enumerate(self.rows):
            if index == self.row:
                marks["cursor"] = (len(rows), len(whole) + self.column)
            whole += row.cells if row.continues else list(row.text())
            if row.continues and self.reflows:
                continue
            pieces = [whole[at:at + columns] for at in range(0, len(whole), columns)] or [[]]
            if not self.reflows:
                del pieces[1:]
            for piece in pieces:
                fresh = Row(columns)
                fresh.cells[:len(piece)] = piece
                fresh.continues = piece is not pieces[-1]
                rows.append(fresh)
            whole = []
        at_top = self.row - self.top
        first, offset = marks["cursor"]
        self.rows = rows
        self.row = min(first + (offset // columns if self.reflows else 0), len(rows) - 1)
        self.column = offset % columns
        self.top = max(self.row - at_top, 0)
