"""The changes that scripts/mutate makes in C++ sources: one token, operator or statement each."""

import collections
import re
from dataclasses import dataclass

TOKENS = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.)*|static_assert\b[^;]*;|\s+)
    |(?P<string>(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*")
    |(?P<char>[LuU]?'(?:[^'\\\n]|\\.)+')
    |(?P<number>\d[\w.']*)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<operator><=>|<<=|>>=|->|::|\+\+|--|<<|[-+*/%&|^!<>=]=|&&|\|\||.)""",
    re.VERBOSE | re.MULTILINE | re.DOTALL)

# Operators with a space on both sides: the others are no operators of two operands.
OPERATORS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "+": "-", "-": "+",
    "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=", "&&": "||", "||": "&&", "&": "|",
    "|": "&", "<<": ">>"}
WORDS = {"true": "false", "false": "true", "break": "continue", "continue": "break"}
STEPS = {"++": "--", "--": "++"}
UNCHANGED_BY_BRACES = ("true", "false", "nullptr", "0", "std::nullopt")
NO_STATEMENT = {
    "using", "namespace", "friend", "template", "break", "continue", "typedef",
    "public", "private", "class", "struct", "enum", "case", "default", "goto", "do", "extern"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclass(frozen=True)
class Mutant:
    """`after` in place of source[begin:end] of a file."""
    file: str
    line: int
    begin: int
    end: int
    after: str
    name: str  # the function or constant, "before => after", and which one of its kind it is


def tokenize(source):
    found = (Token(m.lastgroup, m.group(), *m.span()) for m in TOKENS.finditer(source))
    return [token for token in found if token.kind != "skip"]


def closing(tokens, position):
    """The position of the bracket that closes the one at `position`."""
    depth = 0
    for i in range(position, len(tokens)):
        depth += tokens[i].text in ("(", "{", "[")
        depth -= tokens[i].text in (")", "}", "]")
        if depth == 0:
            return i
    return len(tokens) - 1


def spaced(source, token):
    return source[token.begin - 1].isspace() and source[token.end].isspace()


def number_changes(text):
    digits = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)([uUlL]*)", text)
    if not digits:
        return []
    value, suffix = int(digits[1].replace("'", ""), 0), digits[2]
    return [f"{n}{suffix}" for n in (value + 1, value - 1) if n >= 0]


def char_changes(text):
    prefix, body = text[:text.index("'")], text[text.index("'") + 1:-1]
    value = ord(body.encode().decode("unicode_escape"))
    return [f"{prefix}'\\x{value + 1:X}'"]


def token_changes(source, token, before):
    if token.kind == "number":
        return number_changes(token.text)
    if token.kind == "char":
        return char_changes(token.text)
    if token.kind == "word":
        return [WORDS[token.text]] if token.text in WORDS else []
    if token.text in STEPS:
        return [STEPS[token.text]]
    if token.text == "!":
        return [""]
    is_binary = before is not None and spaced(source, token) and before.text not in (
        "template", "operator", "return", "const")
    return [OPERATORS[token.text]] if token.text in OPERATORS and is_binary else []


def statements(tokens):
    """(first, last) of each statement without braces, the last being its semicolon."""
    position = 0
    while position < len(tokens):
        text = tokens[position].text
        if text in ("if", "for", "while", "switch"):
            while tokens[position].text != "(":
                position += 1
            position = closing(tokens, position) + 1
            continue
        if text in ("{", "}", ";", "else", ":"):
            position += 1
            continue
        end = position
        while end < len(tokens) and tokens[end].text not in (";", "{", "}", ":"):
            end = closing(tokens, end) + 1 if tokens[end].text in ("(", "[") else end + 1
        if end < len(tokens) and tokens[end].text == ";":
            yield position, end
        position = end + 1


def is_declaration(tokens):
    """Whether a statement begins with two words, such as a type and a name."""
    for token, following in zip(tokens, tokens[1:]):
        if token.text in ("=", "(", "[", "+=", "-=", "|=", "&=", "++", "--"):
            return False
        if following.kind == "word" and (token.kind == "word" or token.text in ("*", "&", ">")):
            return True
    return any(token.text in ("~", "default", "delete") for token in tokens)


def return_change(value):
    texts = [token.text for token in value]
    if not value or texts[0] == "{" or "".join(texts) in UNCHANGED_BY_BRACES:
        return None
    depth = 0
    for text in texts:
        depth += (text in "([{") - (text in ")]}")
        if depth == 0 and text in ("==", "!=", "<=", ">=", "&&", "||", "!") and "?" not in texts:
            return "!"
    return "{}"


def statement_changes(source, tokens):
    """(begin, end, after, before as shown, after as shown) of each change of a statement."""
    for first, last in statements(tokens):
        words = tokens[first:last]
        begin, end = words[0].begin, words[-1].end
        text = source[begin:end]
        if words[0].text == "return" and len(words) > 1:
            change = return_change(words[1:])
            value = source[words[1].begin:end]
            if change == "!":
                yield words[1].begin, end, f"!({value})"
            elif change:
                yield words[1].begin, end, "{}" + "\n" * value.count("\n")
            if tokens[first - 1].text == ")":  # of an if
                yield begin, end, "\n" * text.count("\n")
        elif words[0].text not in NO_STATEMENT and (
                words[0].text in ("return", "throw") or not is_declaration(words)):
            yield begin, end, "\n" * text.count("\n")


def declared_name(head):
    """What the beginning of a declaration declares, with the classes before it: Text::find."""
    marks = [i for i, token in enumerate(head) if token.text in ("(", "=", "{") or (
        token.text == "[" and i > 0 and head[i - 1].kind == "word")]
    end = marks[0] if marks else len(head)
    if "operator" in (token.text for token in head):
        return "operator" + "".join(token.text for token in head[:end + 2]).split("operator")[1]
    parts, position = [], end - 1
    while position >= 0 and head[position].kind == "word":
        parts.insert(0, head[position].text)
        if position < 2 or head[position - 1].text != "::":
            break
        position -= 2
        if head[position].text == ">":  # the arguments of a class template
            while head[position].text != "<":
                position -= 1
            position -= 1
    return "::".join(parts)


def scope_of_braces(head, enclosing):
    """(name, what separates declarations inside, if any) of the braces after `head`."""
    words = [token.text for token in head]
    if enclosing and not enclosing[-1][1]:
        return "", ""  # inside a function
    if "namespace" in words or "extern" in words:
        return "", ";"
    for kind in ("enum", "class", "struct"):
        if kind in words and "(" not in words:
            base = words.index(":") if ":" in words else len(words)
            named = [w for w in words[words.index(kind) + 1:base] if w != "final"]
            begin = named.index("<") - 1 if "<" in named else -1
            return "".join(named[begin:]), ";," if kind == "enum" else ";"
    return declared_name(head), ""


def places(tokens):
    """The name of the function, constant or member that each token belongs to."""
    enclosing, begin = [], 0
    for i, token in enumerate(tokens):
        names = [name for name, _ in enclosing if name]
        if not enclosing or enclosing[-1][1]:
            names.append(declared_name(tokens[begin:i + 1]))
        yield "::".join(names)
        if token.text == "{":
            enclosing.append(scope_of_braces(tokens[begin:i], enclosing))
        elif token.text == "}" and enclosing:
            enclosing.pop()
        if token.text in "{}" or token.text in (enclosing[-1][1] if enclosing else ";"):
            begin = i + 1


def mutants(file, source):
    """All changes of one source, in the order of their places."""
    tokens = tokenize(source)
    changes = list(statement_changes(source, tokens))
    for before, token in zip([None] + tokens, tokens):
        changes += [(token.begin, token.end, after)
                    for after in token_changes(source, token, before)]
    place = dict(zip((token.begin for token in tokens), places(tokens)))
    seen = collections.Counter()
    for begin, end, after in sorted(changes):
        before = " ".join(source[begin:end].split())
        name = f"{place[begin]}: {before} => {' '.join(after.split()) or 'nothing'}"
        seen[name] += 1
        yield Mutant(file, source.count("\n", 0, begin) + 1, begin, end, after,
                     name if seen[name] == 1 else f"{name} ({seen[name]})")
