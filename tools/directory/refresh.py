"""Takes newly published lists into a directory."""

import dataclasses

from . import model

# A list that keeps no more than this is taken for damaged.
SMALLEST_SHARE = 0.8


def _german(directory, published, rules, valid_from):
    """The German records that hold until valid_from and from then on."""
    if valid_from < directory.change_date:
        raise model.DataError(f"the directory already announces changes for {directory.change_date}")
    announced_before = valid_from > directory.change_date
    published = published or {code: versions[-1] for code, versions in directory.german.items()}
    result = {}
    for code, entry in published.items():
        known = directory.german.get(code, ())
        rule = rules.get(code, entry.iban_rule)
        if rule is None:
            rule = known[-1].iban_rule if known else 0
        entry = dataclasses.replace(entry, iban_rule=rule)
        if announced_before:
            known = known[-1:]  # holds by now
        if known and known[-1] == entry:
            result[code] = known
        elif known and known[0] != entry:
            result[code] = (known[0], entry)  # the same day once more replaces its announcement
        else:
            result[code] = (entry,)
    return result


def _source(name, directory, published, rules, valid_from):
    """Where a list that has changed comes from."""
    date = published.date or valid_from if published else valid_from
    if name == "Austria":
        return f"Oesterreichische Nationalbank, bank list of {date}"
    if name == "Switzerland":
        return f"SIX, bank master of {date} (with Liechtenstein and foreign participants)"
    if name == "BICs":
        return f"Deutsche Bundesbank, reachable payment service providers valid from {date}"
    banks, _, rule_source = directory.sources.get(name, "").partition("; ")
    if published:
        banks = f"Deutsche Bundesbank, bank-code file valid from {valid_from} and its predecessor"
    if rules or (published and all(entry.iban_rule is not None for entry in published.entries.values())):
        rule_source = f"IBAN rules of {valid_from}"
    return "; ".join(filter(None, (banks, rule_source)))


def refresh(directory, lists, rules, valid_from):
    """The directory with some of its lists (by name, as published) and IBAN rules (by bank code) replaced."""
    tables = {name: directory.list(name) for name in model.LISTS}
    tables |= {name: published.entries for name, published in lists.items()}
    change_date = directory.change_date
    if "Germany" in lists or rules:
        published = lists["Germany"].entries if "Germany" in lists else None
        tables["Germany"] = _german(directory, published, rules, valid_from)
        change_date = valid_from
    result = model.Directory(tables["Germany"], tables["Austria"], tables["Switzerland"], tables["BICs"],
                             change_date, dict(directory.sources))
    for name in model.LISTS:
        moved = name == "Germany" and change_date != directory.change_date
        if moved or result.list(name) != directory.list(name):
            result.sources[name] = _source(name, directory, lists.get(name), rules, valid_from)
    return result


def shrunken_lists(before, after):
    """What the lists that have lost a fifth of their entries or more had, and have."""
    sizes = {name: (len(before.list(name)), len(after.list(name))) for name in model.LISTS}
    return [f"{name} has {new} entries instead of {old}" for name, (old, new) in sizes.items()
            if old and new <= SMALLEST_SHARE * old]
