"""Where a small defect can be planted in a source: found in its syntax tree."""

import json
import shlex
from concurrent.futures import ProcessPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from clang import cindex
from clang.cindex import CursorKind, TypeKind

ARITHMETIC = {TypeKind.BOOL, TypeKind.CHAR_S, TypeKind.SCHAR, TypeKind.UCHAR, TypeKind.SHORT, TypeKind.USHORT,
              TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG, TypeKind.ULONGLONG,
              TypeKind.FLOAT, TypeKind.DOUBLE, TypeKind.ENUM}
OTHER_OPERATOR = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
                  "+": "-", "-": "+", "*": "+", "/": "*"}
REORDERS = {"+", "-", "*", "/"}  # not for enumerations
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR}
SCOPES = {CursorKind.NAMESPACE, CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL}
STATEMENTS = {CursorKind.CALL_EXPR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR}
# Elsewhere a literal may have to be a constant.
NUMBER_PLACES = {CursorKind.BINARY_OPERATOR, CursorKind.RETURN_STMT, CursorKind.CALL_EXPR}
CONSTANTS = {CursorKind.INIT_LIST_EXPR, CursorKind.STATIC_ASSERT}


@dataclass
class Site:
    """The bytes from `begin` to `end` of a source, which `defect` can take the place of."""
    path: str
    line: int
    begin: int
    end: int
    before: str
    defect: str
    is_statement: bool = False
    code: str = ""  # the whole line

    def name(self):
        """What tells it apart in the list of survivors, wherever in its file it is."""
        return f"{self.path}: {self.code}: {self.before} -> {self.defect or '(left out)'}"

    def planted(self, number):
        if self.is_statement:
            return f"if (!mutation::is({number})) {self.before}"
        return f"(mutation::is({number}) ? ({self.defect}) : ({self.before}))"


class Finder:
    def __init__(self, path, name, unit):
        self.path = path
        self.name = name
        self.source = Path(path).read_bytes()
        self.lines = self.source.split(b"\n")
        self.sites = []
        self.macros = []
        self.look_for_functions(unit.cursor)

    def text(self, node):
        return self.source[node.extent.start.offset:node.extent.end.offset].decode()

    def is_here(self, node):
        return node.location.file is not None and node.location.file.name == self.path

    def add(self, node, defect, is_statement=False):
        begin, end = node.extent.start.offset, node.extent.end.offset
        in_macro = any(begin < after and before < end for before, after in self.macros)
        text = self.text(node)
        if begin < end and "\n" not in text and not in_macro:
            line = node.extent.start.line
            code = self.lines[line - 1].decode().strip()
            self.sites.append(Site(self.name, line, begin, end, text, defect, is_statement, code))

    def look_for_functions(self, node):
        for child in node.get_children():
            if not self.is_here(child):
                continue
            if child.kind == CursorKind.MACRO_INSTANTIATION:
                if child.spelling != "emit":
                    self.macros.append((child.extent.start.offset, child.extent.end.offset))
            elif child.kind in FUNCTIONS and child.is_definition():
                if "constexpr" not in self.text(child).split("{")[0]:
                    self.look_into(child, None)
            elif child.kind in SCOPES:
                self.look_for_functions(child)

    def look_into(self, node, parent):
        if node.kind in CONSTANTS or (node.kind == CursorKind.VAR_DECL and "constexpr" in self.text(node)):
            return
        children = list(node.get_children())
        if node.kind == CursorKind.CASE_STMT:
            children = children[1:]
        else:
            self.look_at(node, parent, children)
        for child in children:
            self.look_into(child, node)

    def look_at(self, node, parent, children):
        if node.kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.look_at_operator(node, *children)
        elif node.kind == CursorKind.UNARY_OPERATOR and self.text(node).startswith("!"):
            self.add(node, f"static_cast<bool>({self.text(children[0])})")
        elif node.kind == CursorKind.INTEGER_LITERAL and parent and parent.kind in NUMBER_PLACES:
            self.add(node, f"{self.text(node)} + 1")
        elif node.kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            self.add(node, "false" if self.text(node) == "true" else "true")
        elif node.kind in (CursorKind.RETURN_STMT, CursorKind.IF_STMT) and children and \
                children[0].type.kind == TypeKind.BOOL and children[0].kind != CursorKind.CXX_BOOL_LITERAL_EXPR:
            self.add(children[0], f"!({self.text(children[0])})")
        if parent and parent.kind == CursorKind.COMPOUND_STMT and node.kind in STATEMENTS:
            self.add(node, "", is_statement=True)

    def look_at_operator(self, node, left, right):
        kinds = {left.type.get_canonical().kind, right.type.get_canonical().kind}
        between = self.source[left.extent.end.offset:right.extent.start.offset].decode().strip()
        if between in OTHER_OPERATOR and kinds <= ARITHMETIC and not (between in REORDERS and TypeKind.ENUM in kinds):
            self.add(node, f"{self.text(left)} {OTHER_OPERATOR[between]} {self.text(right)}")


def arguments_of(entry):
    """What a compiler of another make understands of a compile command."""
    kept = []
    takes_next = False
    for word in shlex.split(entry["command"])[1:]:
        if takes_next or word.startswith(("-I", "-D", "-std", "-isystem")):
            kept.append(word)
            takes_next = word == "-isystem"
    return kept


def look(root, name, entry):
    path = str(root / name)
    arguments = [f"-working-directory={entry['directory']}", *arguments_of(entry)]
    unit = cindex.Index.create().parse(path, arguments,
                                       options=cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
    errors = [str(message) for message in unit.diagnostics if message.severity >= cindex.Diagnostic.Error]
    if errors:
        raise ValueError(f"{name} cannot be read: {errors[0]}")
    return Finder(path, name, unit).sites


def find(root, build, tree, folders):
    """Every site in the sources of these folders of `root`, whose copy `tree` has been configured in `build`."""
    entries = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        name = Path(entry["file"]).relative_to(tree)
        if name.parts[0] in folders:
            entries[str(name)] = entry
    with ProcessPoolExecutor() as workers:
        found = workers.map(look, *zip(*((root, name, entries[name]) for name in sorted(entries))))
        return [site for sites in found for site in sites]
