"""Small breaks of C++ code, found in its text. They read as much of the language as code in this
project's format needs; what does not compile afterwards does not count."""
import re

TOKEN = re.compile(r"""//[^\n]*|^[ ]*\#[^\n]*|R"\(.*?\)"|"(\\.|[^"\\])*"|'(\\.|[^'\\])+'|/\*.*?\*/""",
                   re.DOTALL | re.MULTILINE)
COMPARISONS = {"==": ["!="], "!=": ["=="], "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<", ">"],
               ">=": [">", "<"]}
NEVER = re.compile(r"(?!)")
CONDITION_EDGE = re.compile(r"[;,?]| : | [+|]?= |\breturn\b|<<")
OPERAND_EDGE = re.compile(r"&&|\|\||" + CONDITION_EDGE.pattern)
DECLARATION = re.compile(r"(const|auto|constexpr|static|using|struct|extern|thread_local|class)\b"
                         r"|(?!.* (<<|>>) )[\w:<>,&* ]+[ &*]\w+( =|[;({[])")
# Whether it stands before or after another statement makes no difference.
IDLE = re.compile(r"constexpr|const auto \w+ = \[|(?!.* (<<|>>) )[\w:<>,&* ]+ \w+;$|.*= delete;"
                  r"|(return|break|case|default)\b")
CONTROL = re.compile(r"(if|while|do|switch|case|default|static_assert)\b|return .*|.*= delete;")


def without_comments(text, literals=""):
    """The text, as long, without comments and directives, and with `literals` for what literals hold."""
    def replaced(token):
        if token[0][0] not in "\"'R":
            return re.sub(r"[^\n]", " ", token[0])
        return token[0][0] + literals * (len(token[0]) - 2) + token[0][-1] if literals else token[0]
    return TOKEN.sub(replaced, text)


def start_of(code, end, edge):
    """Where the operand starts that ends at `end`."""
    depth = 0
    for i in range(end - 1, -1, -1):
        depth += (code[i] in ")]}") - (code[i] in "([{")
        found = edge.match(code, i) if depth == 0 else None
        if depth < 0 or found:
            return re.compile(r"\s*").match(code, found.end() if found else i + 1).end()
    return 0


def end_of(code, start, edge):
    """Where the operand ends that starts at `start`."""
    depth = 0
    for i in range(start, len(code)):
        depth += (code[i] in "([{") - (code[i] in ")]}")
        if depth < 0 or depth == 0 and edge.match(code, i):
            return i
    return len(code)


def comparisons(code, text):
    """Turned round, and off by the equal case."""
    for found in re.finditer(r"(?<= )([=!<>]=|[<>])(?=\s)", code):
        for other in COMPARISONS[found[0]]:
            yield "comparison", found.start(), found.end(), other


def constants(code, text):
    """Off by one."""
    for found in re.finditer(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d+)[uU]?(?![\w.'])|'_+'", code):
        literal = text[found.start():found.end()]
        yield "constant", found.start(), found.end(), f"({literal} + 1)"
        if literal.isalnum() and literal != "0":
            yield "constant", found.start(), found.end(), f"({literal} - 1)"


def conditions(code, text):
    """Always true, never true, or without one of its operands."""
    for found in re.finditer(r"\b(if|while|for) \(", code):
        start, end = found.end(), end_of(code, found.end(), NEVER)
        if found[1] == "for" and ";" not in code[start:end]:  # over a range
            yield "condition", found.start(), found.start(), "if (false) "
            continue
        if found[1] == "for":
            start = end_of(code, start, re.compile(";")) + 1
            end = end_of(code, start, re.compile(";"))
        if not code[start:end].strip():
            continue
        # What a condition declares is still needed.
        declares = re.search(r"\w = ", code[start:end])
        for value in ["true", "false"]:
            yield "condition", end if declares else start, end, "; " + value if declares else value
    for found in re.finditer(r"(?<=\s)\?(?=\s)", code):
        for value in ["true ", "false "]:
            yield "condition", start_of(code, found.start(), CONDITION_EDGE), found.start(), value
    for found in re.finditer(r"(?<= )(&&|\|\|)\s+(?!\{)", code):
        neutral = "true" if found[1] == "&&" else "false"
        yield "condition", start_of(code, found.start(), OPERAND_EDGE), found.start(), neutral + " "
        yield "condition", found.end(), end_of(code, found.end(), OPERAND_EDGE), neutral


def statements(code):
    """The statements that end in a semicolon, as (start, end, text), by their starts."""
    found, lines, offset, previous = {}, code.splitlines(keepends=True), 0, ""
    for first, line in enumerate(lines):
        if re.match(r"\s*[\w*(+]", line) and previous.endswith((";", "{", "}", ":")):
            depth, taken = 0, ""
            for each in lines[first:]:
                taken += each
                depth += len(re.findall(r"[([{]", each)) - len(re.findall(r"[)\]}]", each))
                if depth < 0 or depth == 0 and each.rstrip().endswith((";", "{", "}")):
                    break
            if depth == 0 and taken.rstrip().endswith(";"):
                start = offset + len(line) - len(line.lstrip())
                found[start] = start, offset + len(taken.rstrip()), " ".join(taken.split())
        offset, previous = offset + len(line), line.strip() or previous
    return found


def changed_statements(code, text):
    """One that is missing, or two in the wrong order."""
    found = statements(code)
    for start, end, statement in found.values():
        if "lock_guard" in statement or not (DECLARATION.match(statement) or CONTROL.match(statement)):
            yield "statement removed", start, end, ";"
    for start, end, statement in found.values():
        following = re.compile(r"\s*").match(code, end).end()
        if following not in found or IDLE.match(statement) or IDLE.match(found[following][2]):
            continue
        second, last, other = found[following]
        same_end = statement.startswith("if ") and statement.split(") ")[-1] == other.split(") ")[-1]
        if DECLARATION.match(statement):
            name = re.search(r"(\w+)( =|[;({[])", statement)[1]
            needed = DECLARATION.match(other) or re.search(rf"\b{name}\b", other)
        if not (same_end or DECLARATION.match(statement) and needed):
            yield "order", start, last, text[second:last] + "\n" + text[start:end]


def mutations(text):
    """All of them, as (description, text). The description has no line numbers, so that it stays the
    same when other lines change."""
    code, plain = without_comments(text, "_"), without_comments(text)
    for assertion in re.finditer(r"static_assert\(", code):
        end = end_of(code, assertion.end(), NEVER)
        code = code[:assertion.end()] + re.sub(r"[^\n]", " ", code[assertion.end():end]) + code[end:]
    seen = set()
    for operator in [comparisons, constants, conditions, changed_statements]:
        for kind, start, end, other in operator(code, text):
            first, last = text.rfind("\n", 0, start) + 1, text.find("\n", end)
            before = " ".join(plain[first:last].split())
            after = " ".join((plain[first:start] + other + plain[end:last]).split())
            mutated = text[:start] + other + text[end:]
            if mutated not in seen and before != after:
                seen.add(mutated)
                change = before if kind in ["statement removed", "order"] else f"{before}  =>  {after}"
                yield f"{kind}: {change}", mutated
