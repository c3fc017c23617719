"""The small changes that a mutation run makes: each is one change of one line of code."""

import re

SWAPS = [
    ("comparison", r"(?<![=!<>-])==(?!=)", "!="),
    ("comparison", r"!=(?!=)", "=="),
    ("comparison", r"(?<=\s)<(?=\s)", "<="),
    ("comparison", r"(?<=\s)<=(?=\s)", "<"),
    ("comparison", r"(?<=\s)>(?=\s)", ">="),
    ("comparison", r"(?<=\s)>=(?=\s)", ">"),
    ("condition", r"&&", "||"),
    ("condition", r"\|\|", "&&"),
    ("condition", r"(?<=\()!(?=[a-zA-Z_(])", ""),
    ("constant", r"\bkOk\b", "kRefused"),
    ("constant", r"\bkRefused\b", "kNoResource"),
    ("constant", r"\bkNoResource\b", "kRefused"),
    ("constant", r"\btrue\b", "false"),
    ("constant", r"\bfalse\b", "true"),
    ("arithmetic", r"(?<=\s)\+(?=\s)", "-"),
    ("arithmetic", r"(?<=\s)-(?=\s)", "+"),
    ("arithmetic", r"(?<=\s)\*(?=\s)", "/"),
    ("separator", r'"&\\n"', '"&"'),
    ("separator", r'",;\\n"', '",\\\\n"'),
    ("separator", r'",\\n"', '","'),
    ("separator", r'"=,\\n"', '"=\\\\n"'),
    ("separator", r"','", "';'"),
    ("separator", r"'='", "':'"),
    ("case", r"\bstartsWithIgnoreCase\(", "startsWith("),
]
NUMBER = re.compile(r"(?<![\w.\"%#x])(\d+)(?![\w.\"])")
CONDITION = re.compile(r"^(\s*(?:\} else )?(if|while) \()([^;]*)(\)\s*\{?\s*(?:return.*)?)$")
STATEMENT = re.compile(
    r"^\s+(?!return\b|const\b|auto\b|static\b|using\b|if\b|for\b|else\b|case\b|break\b)"
    r"[\w.>\-*()]+[(=+\[].*;\s*$"
)
DECLARATION = re.compile(r"= (delete|default);\s*$")  # nothing that runs
NO_CODE = ("//", "#", "*", "/*", "static_assert", "using ", "namespace")


class Mutant:
    def __init__(self, path, line, kind, old_lines, new_lines):
        self.path, self.line, self.kind = path, line, kind
        self.old_lines, self.new_lines = old_lines, new_lines

    def name(self):
        """Names the change by what it does, not by where it stands: lines move."""
        old = " / ".join(text.strip() for text in self.old_lines)
        new = " / ".join(text.strip() for text in self.new_lines) or "(dropped)"
        return f"{self.path}: {self.kind}: {old}  =>  {new}"

    def applied_to(self, source):
        lines = source.split("\n")
        assert lines[self.line : self.line + len(self.old_lines)] == self.old_lines
        lines[self.line : self.line + len(self.old_lines)] = self.new_lines
        return "\n".join(lines)


def is_statement(text):
    return STATEMENT.match(text) and text.count("(") == text.count(")")


def changes_of(text):
    """Each change of the one line, as kind and new text; None drops the line."""
    code = text if '"' in text else text.split("//")[0]
    for kind, pattern, replacement in SWAPS:
        for match in re.finditer(pattern, code):
            yield kind, code[: match.start()] + match.expand(replacement) + code[match.end() :]
    for match in NUMBER.finditer(code):
        yield "constant", code[: match.start()] + str(int(match.group(1)) + 1) + code[match.end() :]
    match = CONDITION.match(code)
    if match and code.count("(") == code.count(")"):
        for value in ("true", "false") if match.group(2) == "if" else ("false",):
            yield "condition removed", match.group(1) + value + match.group(4)
    if is_statement(code):
        yield "statement dropped", None


def mutants_of(path, source):
    lines = source.split("\n")
    for number, text in enumerate(lines):
        if not text.strip() or text.strip().startswith(NO_CODE) or DECLARATION.search(text):
            continue
        for kind, changed in changes_of(text):
            yield Mutant(path, number, kind, [text], [] if changed is None else [changed])
        following = lines[number + 1] if number + 1 < len(lines) else ""
        if is_statement(text) and is_statement(following):
            yield Mutant(path, number, "order", [text, following], [following, text])
