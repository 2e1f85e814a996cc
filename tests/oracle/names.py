# SPDX-License-Identifier: GPL-3.0-or-later
"""A second opinion on names, written from the rules of the manual and not from the program. Texts
hold one character for each UTF-16 unit, for lengths and cuts count those; U+DC80 to U+DCFF stand
for bytes that are not UTF-8."""
import datetime
import os
import re

WHITE = "\t\n\v\f\r \x85\xa0\u1680\u2028\u2029\u202f\u205f\u3000" + "".join(
    map(chr, range(0x2000, 0x200b)))
EMPTY_TEXT = "Text constant is empty"  # in an analysis, only the batch's list has that


def units(value):
    """A text in units, or any JSON value with its texts in units."""
    if isinstance(value, dict):
        return {key: units(each) for key, each in value.items()}
    if isinstance(value, list):
        return [units(each) for each in value]
    if not isinstance(value, str):
        return value
    data = value.encode("utf-16-le", "surrogatepass")
    return "".join(chr(low | high << 8) for low, high in zip(data[::2], data[1::2]))


def whole(text):
    """With surrogates in pairs put together."""
    return text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")


def in_case(text, which):
    """0 as it is, 1 upper case, 2 lower case."""
    return {1: units(whole(text).upper()), 2: units(whole(text).lower())}.get(which, text)


def without_halves(text):
    """Half a pair that stands for no byte becomes U+FFFD."""
    return units(re.sub("[\ud800-\udc7f\udd00-\udfff]", "\ufffd", whole(text)))


def cut(text, start, end):
    """From start to end; what that leaves of a pair is no byte, whatever it looks like."""
    kept = list(text[start:end])
    for at, place in (start, 0), (end, -1):
        if kept and len(whole(text[:at])) + len(whole(text[at:])) > len(whole(text)):
            kept[place] = "\ufffd"
    return "".join(kept)


def to_disk(text):
    return whole(without_halves(text)).encode("utf-8", "surrogateescape")


def from_disk(name):
    return units(name.decode("utf-8", "surrogateescape"))


def join(base, extension):
    return base + "." + extension if extension else base


class Entry:
    """A file. A leading dot starts no extension, and one at the end belongs to the name."""

    def __init__(self, path):
        self.folder, self.old = path.rsplit(b"/", 1)
        self.path = from_disk(path)
        name = from_disk(self.old)
        dot = name.rfind(".") if 0 < name.rfind(".") < len(name) - 1 else len(name)
        self.name, self.extension = name[:dot], name[dot + 1:]
        facts = os.lstat(path)
        self.size = facts.st_size
        self.modified = datetime.datetime(1970, 1, 1) + datetime.timedelta(
            seconds=facts.st_mtime_ns // 10**9)


class Recipe:
    """Evaluates a recipe for one run; the rules keep their counters. defaults has the settings of
    each kind of rule, and of "extension"."""

    def __init__(self, recipe, defaults, entries):
        self.rules = [{**defaults[rule["kind"]], **units(rule), "done": 0, "next": {}}
                      for rule in recipe["rules"]]
        self.handler = {**defaults["extension"], **units(recipe["extension"])}
        self.options = recipe["options"]
        self.entries = entries
        self.problems = []  # of the name last made

    def report(self, level, text):
        self.problems.append({"level": level, "text": text})

    def name(self, entry):
        name = assembled = ""
        self.problems = []
        for rule in self.rules:
            fragment = getattr(self, rule["kind"])(rule, entry, assembled)
            if not self.options.get("compliance"):
                fragment = fragment.replace(":", "_").replace("/", "_")
            name = assembled = name + fragment
            if rule["kind"] == "RegExTag" and rule["source"] >= 1 and rule["replaceAll"]:
                name = fragment  # the next rule still reads what was assembled before
        return name

    def Text(self, rule, _entry, _assembled):
        if not rule["theText"]:
            self.report(1, EMPTY_TEXT)
        return rule["theText"]

    def Separator(self, rule, _entry, _assembled):
        return " _-*.!(){}"[rule["separatorIndex"]]

    def Counter(self, rule, entry, _assembled):
        start, step, total = rule["startValue"], rule["increment"], len(self.entries)
        value = start + rule["done"] * step
        if rule["individualFileTypes"]:
            value = rule["next"].get(entry.extension, start)
        value = total if rule["counterType"] else value
        rule["next"][entry.extension] = value + step
        rule["done"] += 1
        text = {0: str(value), 1: roman(value), 2: roman(value).upper()}.get(
            rule["counterFormat"], "???")
        beyond = str(start + total * step or -1)
        return filled(text, rule, rule["padding"] if rule["manualPadding"] else len(beyond))

    def Date(self, rule, _entry, _assembled):
        return sized(date_text(datetime.datetime.now(), rule), rule)

    def Original(self, rule, entry, _assembled):
        which = rule["whichProperty"]
        if which == 1:
            parts = ["/", *entry.path[1:].split("/")]
            text = parts[-min(max(rule["parentLevel"], 0) + 2, len(parts) - 1)]
        elif which == 2:
            return size_text(entry.size, rule)
        elif which == 3:
            return sized(date_text(entry.modified, rule), rule)
        elif which in (0, 4):
            text = entry.extension if which == 4 else entry.name
        else:
            return "Error - end reached"
        text = cut(text, max(rule["dropFromBeginning"], 0), len(text))
        text = cut(text, 0, max(len(text) - max(rule["dropFromEnd"], 0), 0))
        if which != 1 and rule["stringToLookFor"]:
            text = replaced(text, rule)
        text = units("".join(c for c in whole(text) if c not in whole(rule["charsToStrip"])))
        if rule["blankHandling"] == 1:
            text = text.replace(" ", "")
        elif rule["blankHandling"] == 2:
            high, low = in_case(text, 1), in_case(text, 2)
            text = "".join(c + " " * (c != high[i] and high[i + 1] == after != low[i + 1])
                           for i, (c, after) in enumerate(zip(text, text[1:]))) + text[-1:]
        return sized(in_case(text, rule["caseConversion"]), rule)

    def RegExTag(self, rule, entry, assembled):
        text = assembled if rule["source"] else entry.name
        for pair in rule["regArray"]:
            text = rewritten(text, pair["match"], pair["replace"])
        return text if rule["regArray"] else "???RegEx???"

    def CSVTag(self, rule, entry, _assembled):
        rows, header, column = rule["theRows"], int(rule["skipFirst"]), rule["useColumn"]
        at = rule["done"] + header
        rule["done"] += 1
        if rows is None:
            problem = "No CSV loaded. Default text used."
        else:
            if rule["wrap"] and header < len(rows) <= at:
                at = header + (at - header) % (len(rows) - header)
            if at < len(rows) and 0 <= column < len(rows[at]):
                return rows[at][column].strip('"' if rule["trimQuotes"] else "\0")
            problem = (f"CSV table: Row {at} does not exist. Default used." if at >= len(rows) else
                       f"CSV table: Column {column} does not exist for row {at}. Default used.")
        self.report(1, f"{problem} File: {entry.path}")
        return rule["defaultText"]

    def extension(self, entry):
        handler, own = self.handler, entry.extension
        method = handler["handlingMethod"]
        if method == 0:
            return in_case(own, handler["caseHandling"])
        if method == 2:
            for row in handler["mapArray"]:
                original, target = row["original"], row["target"]
                if original == own or (handler["ignoreCase"] and
                                       in_case(original, 1) == in_case(own, 1)):
                    return target
        if method == 4:
            text = {0: entry.name + "." + own, 1: entry.name}.get(handler["regAccess"], own)
            return rewritten(text, handler["regEx"], handler["rePattern"])
        if method == 1 or (method == 2 and handler["mapRemainderChoice"]):
            return handler["replacer"]
        return "" if method == 3 else own


def filled(text, rule, width, at_end=False):
    fill = dict(enumerate("0 *-_")).get(rule["paddingChar"], "x") * max(width - len(text), 0)
    return text + fill if at_end else fill + text


def sized(text, rule):
    text = filled(text, rule, rule["padding"], rule["paddingPosition"])
    limited = rule["limitSize"] and len(text) > rule["maxSize"]
    return cut(text, 0, max(rule["maxSize"], 1)) if limited else text


def size_text(size, rule):
    unit = rule["sizeFormat"]
    if unit not in range(1, 6):
        unit = 1 + sum((size >= 2**10, size >= 2**20, size >= 2**30, size > 2**40))
    number = str(size // 1024**(unit - 1)) + ("", "", ".0", ".00", ".000")[unit - 1]
    name = " " * bool(rule["separateUnit"]) + ("B", "KB", "MB", "GB", "TB")[unit - 1]
    return filled(number, rule, rule["padding"]) + name * bool(rule["showSizeUnit"])


def date_text(date, rule):
    hour, half = date.hour if rule["timeFormat"] else date.hour % 12 or 12, "AP"[date.hour > 11]
    texts = [f"{date:%B} {date.day}, {date.year}", f"{date:%b} {date.day}, {date.year}", None, None,
             date.year, date.year % 100, f"{date:%B}", date.month, date.day, f"{date:%A}",
             date.isoweekday() % 7 + 1, hour, date.minute, date.second, half + "M", half]
    return str(dict(enumerate(texts)).get(rule["dateFormat"], "???date???"))


def roman(value):
    value, text = max(value, 0), ""
    for worth, letters in zip((1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1),
                              "m cm d cd c xc l xl x ix v iv i".split()):
        text, value = text + letters * (value // worth), value % worth
    return text


def replaced(text, rule):
    """Exactly, or ignoring letter case character by character."""
    needle, by, result, at = rule["stringToLookFor"], rule["stringToReplace"], "", 0
    if not rule["caseSensitiveSearch"]:
        return text.replace(needle, by)

    def folded(part):
        return [c.casefold() if len(c.casefold()) == 1 else c for c in part]

    text, needle = whole(text), whole(needle)
    while at < len(text):
        found = folded(text[at:at + len(needle)]) == folded(needle)
        result += by if found else text[at]
        at += len(needle) if found else 1
    return units(result)


def rewritten(text, pattern, template):
    """By patterns that mean the same to Python; "" when pattern or template is invalid. A reference
    to a group takes as many digits as there are groups for; a backslash at the end is nothing."""
    steps = re.findall(r"\\.|\$\d*|[^\\]", whole(template), re.DOTALL)
    try:
        compiled = re.compile(whole(pattern))
        for at, step in enumerate(steps):
            digits = step[1:]
            while step[0] == "$" and len(digits) > 1 and int(digits) > compiled.groups:
                digits = digits[:-1]
            rest = step[1 + len(digits):] if step[0] == "$" else step[-1]
            steps[at] = (int(digits) if step[0] == "$" else None, rest)
    except (re.error, ValueError):
        return ""
    if not pattern or any(group is not None and group > compiled.groups for group, _ in steps):
        return ""
    return units(compiled.sub(lambda match: "".join(
        (match[group] or "" if group is not None else "") + rest for group, rest in steps),
        whole(text)))


def analysis(recipe):
    """What each file would be called, and the problems: the files' and all."""
    files, everything, seen = [], [], set()
    for entry in recipe.entries:
        name = recipe.name(entry) if recipe.rules else "No Rules"
        key = in_case(name + "." + entry.extension, 1)
        if not recipe.rules:
            recipe.problems = []
            recipe.report(2, "No rules defined. You need at least one naming rule")
        elif not name.strip(WHITE):
            recipe.report(2, "Rules evaluate to empty name.")
        if recipe.rules and key in seen:
            recipe.report(2 if recipe.options.get("duplicatesAreCritical") else 1,
                          f'Duplicate: "{name}" is already used. Check {entry.path}')
        seen.add(key)
        shown = "." + recipe.extension(entry) if recipe.handler["handlingMethod"] else ""
        files.append({"path": entry.path, "fileName": entry.name, "extension": entry.extension,
                      "targetName": name, "targetExtension": shown,
                      "errors": [each for each in recipe.problems if each["text"] != EMPTY_TEXT]})
        everything += recipe.problems
    return files, everything


def run(recipe, folders):
    """What a run does, one file after the other: the name, whether the file gets it (None where it
    is left alone) and the problems. folders has the names in each folder, and follows."""
    for entry in recipe.entries:
        base = recipe.name(entry).strip(WHITE)
        if not base:
            base = "SafeName"
            recipe.report(1, "Rules evaluated to empty name. SafeName used")
        base, extension = map(without_halves, (base, recipe.extension(entry)))
        if recipe.options.get("keepUnchanged") and to_disk(join(base, extension)) == entry.old:
            yield join(base, extension), None, recipe.problems
            continue
        there, free, number = folders[entry.folder], base, 0
        # Tested with the dot, also without extension; what leads out of the folder is refused as
        # it is.
        while not set("/\0") & set(base + extension) and (
                to_disk(free + "." + extension) in there | {b".", b".."}):
            number += 1
            free = f"{base}-{number}"
        if number:
            recipe.report(1, f"'{base}' is not unique. Modified to '{free}'")
        new = to_disk(join(free, extension))
        works = new == entry.old or not (new in there | {b".", b".."} or len(new) > 255 or
                                         set(b"/\0") & set(new))
        if works:
            there.remove(entry.old)
            there.add(new)
        yield join(free, extension), works, recipe.problems
