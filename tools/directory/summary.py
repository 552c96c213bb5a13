"""Says what a refresh has changed, and what a person should look at before it is committed."""

import pathlib
import re

from . import model

SOURCE = pathlib.Path(__file__).resolve().parents[2] / "src"
SHOWN = 20  # lines of one kind


def implemented_methods():
    """The check methods of the library: the rows of its method table."""
    table = (SOURCE / "checkdigit/methods.h").read_text(encoding="utf-8")
    return {int(code, 16) for code in re.findall(r"\bmethod_([0-9A-F]{2})(?: =|\()", table)}


def implemented_rules():
    """The numbers of the library's IBAN rules: the rows of its rule table."""
    table = (SOURCE / "bank/iban_rules.cpp").read_text(encoding="utf-8")
    return {int(number) for number in re.findall(r"^\s*\{(\d+), \w+", table, re.MULTILINE)}


def _listing(title, lines):
    if not lines:
        return []
    hidden = [f"    ... and {len(lines) - SHOWN} more"] if len(lines) > SHOWN else []
    return [f"  {title}: {len(lines)}"] + [f"    {line}" for line in lines[:SHOWN]] + hidden


def _latest(entry):
    return entry[-1] if isinstance(entry, tuple) else entry


def _printed(field, value):
    if field == "method":
        return f"{value:02X}"
    return f"{value:04}" if field == "iban_rule" else f"{value!r}"


def _differences(old, new):
    before, after = vars(old), vars(new)
    return ", ".join(f"{name.replace('_', ' ')} {_printed(name, before[name])} -> {_printed(name, after[name])}"
                     for name in before if before[name] != after[name])


def _list_lines(name, before, after):
    old = {key: _latest(entry) for key, entry in sorted(before.list(name).items())}
    new = {key: _latest(entry) for key, entry in sorted(after.list(name).items())}
    lines = [f"{name}: {len(new)} entries"]
    lines += _listing("added", [f"{key} {entry.name}" for key, entry in new.items() if key not in old])
    lines += _listing("removed", [f"{key} {entry.name}" for key, entry in old.items() if key not in new])
    lines += _listing("changed", [f"{key} {entry.name}: {_differences(old[key], entry)}"
                                  for key, entry in new.items() if key in old and old[key] != entry])
    return lines


def _change_date_lines(before, after):
    announced = sum(len(versions) == 2 for versions in after.german.values())
    lines = [f"Change date: {after.change_date}, with new data for {announced} German bank codes"]
    if after.change_date != before.change_date:
        taken_over = sum(len(versions) == 2 for versions in before.german.values())
        lines += [f"  The {taken_over} changes of {before.change_date} hold from the start now."]
    return lines


def _bank_codes_by(directory, attribute):
    """The German bank codes, by what one of their versions has as an attribute."""
    codes = {}
    for code, versions in sorted(directory.german.items()):
        for value in {getattr(version, attribute) for version in versions}:
            codes.setdefault(value, []).append(code)
    return dict(sorted(codes.items()))


def _some(codes):
    return f"{len(codes)} bank codes ({', '.join(codes[:5])}{', ...' if len(codes) > 5 else ''})"


def _method_and_rule_lines(before, after, rules):
    methods, numbers = implemented_methods(), implemented_rules()
    by_rule, known_rules = _bank_codes_by(after, "iban_rule"), _bank_codes_by(before, "iban_rule")
    return [
        *_listing("check methods that the library does not know",
                  [f"{method:02X}: {_some(codes)}" for method, codes in _bank_codes_by(after, "method").items()
                   if method not in methods]),
        *_listing("IBAN rules without data in the library",
                  [f"{rule:04}: {_some(codes)}" for rule, codes in by_rule.items() if rule // 100 not in numbers]),
        *_listing("IBAN rules in a version new to the directory; the library's lists may be those of another",
                  [f"{rule:04}: {_some(codes)}" for rule, codes in by_rule.items()
                   if rule // 100 in numbers and rule not in known_rules]),
        *_listing("IBAN rules given for bank codes that do not exist",
                  [f"{code}: {rule:04}" for code, rule in sorted(rules.items()) if code not in after.german]),
    ]


def _unnamed_bics(directory):
    """BICs of the countries with bank codes that no bank code leads to."""
    banks = [_latest(bank) for name in ("Germany", "Austria", "Switzerland") for bank in directory.list(name).values()]
    named = {bank.bic for bank in banks}
    return {bic for bic in directory.bics if bic[4:6] in ("AT", "CH", "DE", "LI") and bic not in named}


def _unlisted_bics(directory):
    """BICs of banks that the list of BICs does not have."""
    banks = [_latest(bank) for name in ("Germany", "Austria", "Switzerland") for bank in directory.list(name).values()]
    return {bank.bic: bank.name for bank in banks if bank.bic and bank.bic not in directory.bics}


def _reference_lines(before, after):
    """Successors and BICs that lead nowhere; of the BICs, which are many, only those that led somewhere before."""
    missing = {code: versions[-1].successor for code, versions in sorted(after.german.items())}
    unnamed, unlisted = _unnamed_bics(after), _unlisted_bics(after)
    return [
        *_listing("successors that do not exist",
                  [f"{code}: {successor}" for code, successor in missing.items()
                   if successor and successor not in after.german]),
        *_listing(f"BICs without a bank that are new or had one before (altogether {len(unnamed)} have none)",
                  [f"{bic} {after.bics[bic].name}" for bic in sorted(unnamed - _unnamed_bics(before))]),
        *_listing(f"BICs of banks that no scheme reaches, new among them (altogether {len(unlisted)})",
                  [f"{bic} {unlisted[bic]}" for bic in sorted(unlisted.keys() - _unlisted_bics(before).keys())]),
    ]


def lines(before, after, rules):
    """The summary of a refresh; `rules` are the IBAN rules that were given with it."""
    result = [line for name in model.LISTS for line in _list_lines(name, before, after)]
    result += _change_date_lines(before, after)
    remarks = _method_and_rule_lines(before, after, rules) + _reference_lines(before, after)
    return result + (["To be looked at:", *remarks] if remarks else ["Nothing special to be looked at."])
