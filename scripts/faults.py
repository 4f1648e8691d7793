"""The faults that scripts/mutate plants: what may be changed in a C++ source, and into what.

It looks at tokens, not at meaning, and relies on the layout that clang-format gives: " < " compares, "<" alone
belongs to a template, "&&" without a blank before it is a reference. What a fault makes of the code need not
compile; those that do not are not counted.
"""
import collections
import random
import re

# One character range of a text and what to put in its place.
Fault = collections.namedtuple("Fault", "file start end new")

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*|\bstatic_assert\b.*?;)
    |(?P<raw>R"(?P<fence>[^(]*)\(.*?\)(?P=fence)")
    |(?P<string>"(?:\\.|[^"\\\n])*")
    |(?P<character>'(?:\\.|[^'\\\n])+')
    |(?P<number>\b[0-9](?:[\w.]|'(?=[0-9a-fA-F])|(?<=[eE])[+-])*)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<operator><=>|<<=|>>=|->|::|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])""",
    re.VERBOSE | re.DOTALL | re.MULTILINE)

# Operators with a blank before and behind them.
OTHERS = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/", "+"], "/": ["*"], "%": ["*"],
    "<<": [">>"], ">>": ["<<"], "&": ["|"], "|": ["&"], "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="],
    "|=": ["&="], "&=": ["|="], "?": ["|| true ?", "== false ?"],
}
WORDS = {"true": "false", "false": "true", "break": "continue", "continue": "break"}
STARTS_NO_CALL = {"return", "if", "for", "while", "switch", "throw", "case", "delete", "new", "sizeof", "else",
                  "catch", "using", "namespace", "operator", "defined", "alignas", "do", "goto"}
DEFAULTS = {"", "{}", "nullptr", "std::nullopt", "false", "0", '""'}  # of `return`


class Source:
    def __init__(self, file, text):
        self.file, self.text = file, text
        self.tokens = [match for match in TOKEN.finditer(text) if match.lastgroup != "skip"]
        self.names = [match.group() for match in self.tokens]

    def closing(self, at):
        """The token that closes the bracket `at`, or None."""
        depth = 0
        for i in range(at, len(self.names)):
            if self.names[i] in "([{":
                depth += 1
            elif self.names[i] in ")]}":
                depth -= 1
                if depth == 0:
                    return i
        return None

    def between(self, first, last):
        """The text after one token and before another."""
        return self.text[self.tokens[first].end():self.tokens[last].start()]

    def end_of_call(self, at):
        """The ";" behind a statement that only calls something, or None when `at` begins none."""
        before = self.names[at - 1] if at else "}"
        if before not in (";", "{", "}", "else", ")", ":") or self.names[at] in STARTS_NO_CALL:
            return None
        i, word_may_follow = at, True
        while i < len(self.names):
            kind, name = self.tokens[i].lastgroup, self.names[i]
            if kind == "word" and word_may_follow:
                word_may_follow = False
            elif name in ("::", ".", "->"):
                word_may_follow = True
            elif name in "([":
                i = self.closing(i)
                if i is None:
                    return None
            elif name == ";" and self.names[i - 1] == ")":
                return i
            else:
                return None
            i += 1
        return None

    def statement_end(self, at):
        while at < len(self.names) and self.names[at] != ";":
            at = self.closing(at) if self.names[at] in "([{" else at + 1
            if at is None:
                return None
        return at

    def faults(self):
        for i, token in enumerate(self.tokens):
            kind, name = token.lastgroup, self.names[i]
            start, end = token.span()
            before = self.text[start - 1:start]
            behind = self.text[end:end + 1]
            for new in getattr(self, "of_" + kind)(i, name, before in " \n" and behind in " \n"):
                if isinstance(new, tuple):
                    yield Fault(self.file, *new)
                else:
                    yield Fault(self.file, start, end, new)

    def of_raw(self, i, name, alone):
        return self.of_string(i, name, alone)

    def of_string(self, i, name, _):
        start = self.tokens[i].start()
        first = name.index('"') + 1
        if name[first:] == '"':
            return ['"x"']
        places = [match for match in re.finditer(r"\\[xuU0-7]?\w+|\\.|[^\\]", name[first:-1], re.DOTALL)
                  if len(match.group()) == 1 and match.group() != "\n"]
        found = []
        for match in places:  # one of them is enough: the line counts once whatever its length
            at = start + first + match.start()
            found.append((at, at + 1, next_character(match.group())))
        return random.Random(name).sample(found, min(2, len(found)))

    def of_character(self, _, name, __):
        if name[1] == "\\":
            return ["' '"] if name != "'\\''" else ["'`'"]
        return ["'" + next_character(name[1]) + "'"] if len(name) == 3 else []

    def of_number(self, _, name, __):
        match = re.fullmatch(r"(0[xX]|0(?=[0-7]))?([0-9a-fA-F']+)([uUlLzZ]*)", name)
        if match is None or (match.group(1) is None and "e" in name):  # with a point or an exponent
            return [re.sub(r"\d", lambda digit: str((int(digit.group()) + 1) % 10), name, count=1)]
        base, digits, suffix = match.group(1) or "", match.group(2).replace("'", ""), match.group(3)
        value = int(digits, {"": 10, "0": 8}.get(base, 16))
        values = [value + 1] + ([value - 1] if value > 0 else [])
        return [format(value, {"": "d", "0": "#o"}.get(base, "#x")).replace("0o", "0") + suffix for value in values]

    def of_word(self, i, name, _):
        found = [WORDS[name]] if name in WORDS else []
        if name in ("if", "while") and i + 1 < len(self.names) and self.names[i + 1] == "(":
            end = self.closing(i + 1)
            condition = self.between(i + 1, end)
            if ";" not in condition and not re.search(r"[\w*&] \w+ = ", condition):
                found.append((self.tokens[i + 1].end(), self.tokens[end].start(), f"!({condition})"))
        if name == "return":
            end = self.statement_end(i)
            if end is not None and self.between(i, end).strip() not in DEFAULTS:
                found.append((self.tokens[i].end(), self.tokens[end].start(), " {}"))
        end = self.end_of_call(i)
        if end is not None and "reserve" not in self.names[i:end]:  # room is only taken later
            found.append((self.tokens[i].start(), self.tokens[end].start(), ""))
        return found

    def of_operator(self, i, name, alone):
        if i and self.names[i - 1] == "operator":
            return []
        if name == "!":
            return [""]
        if name in ("++", "--"):
            return ["--" if name == "++" else "++"]
        return OTHERS.get(name, []) if alone else []


def next_character(character):
    """Another one that is harmless within quotes."""
    if character in "zZ9":
        return {"z": "a", "Z": "A", "9": "0"}[character]
    return chr(ord(character) + 1) if character.isalnum() and character.isascii() else "#" if character != "#" else "="


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def in_words(text, fault):
    """The lines that a fault changes, as they are and as they become, each as one line of text."""
    first = text.rfind("\n", 0, fault.start) + 1
    last = text.find("\n", fault.end)
    last = len(text) if last < 0 else last
    changed = text[first:fault.start] + fault.new + text[fault.end:last]
    return " ".join(text[first:last].split()), " ".join(changed.split())


def in_random_order(texts, generator):
    """Faults of {file: text}, without end but for their number: each time a random line that has any, and a
    random one of that line. So long files get more, and a line with a long text no more than others."""
    lines = collections.defaultdict(list)
    for file in sorted(texts):
        for fault in Source(file, texts[file]).faults():
            lines[file, line_of(texts[file], fault.start)].append(fault)
    places = sorted(lines)
    while places:
        generator.shuffle(places)
        for place in places:
            yield lines[place].pop(generator.randrange(len(lines[place])))
        places = sorted(place for place in lines if lines[place])
