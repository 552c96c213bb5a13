"""A minimal perfect hash: every key gets the number of its place in the list of keys.

Three tabulation hashes make each key an edge between three of about 1.23 vertices a key. Without a cycle
the edges can be taken off one by one, each at a vertex that no other one touches any more; in the reverse order
every edge finds a vertex free to make the sum of its three values the wanted number.
"""

import dataclasses

FIRST_CHARACTER = ord("0")
CHARACTERS = ord("z") - ord("0") + 1
MIN_LENGTH = 6
MAX_LENGTH = 15
UNUSED = 0xFFFFFFFF


@dataclasses.dataclass(frozen=True)
class PerfectHash:
    tabulation: list  # [character - "0" + 75 * position] -> three numbers
    values: list  # one a vertex


def _random_numbers(seed):
    """SplitMix64: the same 32-bit numbers on every machine."""
    state = seed
    while True:
        state = (state + 0x9E3779B97F4A7C15) & 0xFFFFFFFFFFFFFFFF
        mixed = ((state ^ (state >> 30)) * 0xBF58476D1CE4E5B9) & 0xFFFFFFFFFFFFFFFF
        mixed = ((mixed ^ (mixed >> 27)) * 0x94D049BB133111EB) & 0xFFFFFFFFFFFFFFFF
        yield (mixed ^ (mixed >> 31)) >> 32


def _edges(keys, tabulation, vertices):
    """The three vertices of each key, or None when two of a key's are the same."""
    edges = []
    for key in keys:
        first = second = third = 0
        for position, character in enumerate(key):
            row = tabulation[character - FIRST_CHARACTER + CHARACTERS * position]
            first += row[0]
            second += row[1]
            third += row[2]
        edge = tuple((total & 0xFFFFFFFF) % vertices for total in (first, second, third))
        if len(set(edge)) < 3:
            return None
        edges.append(edge)
    return edges


def _removal_order(edges, vertices):
    """(edge, vertex that it leaves free) in order of removal, or None when the edges form a cycle."""
    # A vertex whose one remaining edge is wanted: the exclusive or of all its edges' numbers is that number.
    degree = [0] * vertices
    remaining = [0] * vertices
    for number, edge in enumerate(edges):
        for vertex in edge:
            degree[vertex] += 1
            remaining[vertex] ^= number
    order = []
    ready = [vertex for vertex in range(vertices) if degree[vertex] == 1]
    while ready:
        free = ready.pop()
        if degree[free] != 1:
            continue
        number = remaining[free]
        order.append((number, free))
        for vertex in edges[number]:
            degree[vertex] -= 1
            remaining[vertex] ^= number
            if degree[vertex] == 1:
                ready.append(vertex)
    return order if len(order) == len(edges) else None


def build(keys):
    """The perfect hash of distinct keys (bytes) in the order of their slots; the same for the same keys."""
    for key in keys:
        if not MIN_LENGTH <= len(key) <= MAX_LENGTH or not all(ord("0") <= c <= ord("z") for c in key):
            raise ValueError(f"key {key!r} cannot be hashed")
    vertices = -(-len(keys) * 123 // 100)
    seed = 0
    order = None
    while order is None:
        seed += 1
        numbers = _random_numbers(seed)
        tabulation = [tuple(next(numbers) for _ in range(3)) for _ in range(CHARACTERS * MAX_LENGTH)]
        edges = _edges(keys, tabulation, vertices)
        order = _removal_order(edges, vertices) if edges else None
    values = [UNUSED] * vertices
    for edge in edges:
        for vertex in edge:
            values[vertex] = 0
    for number, free in reversed(order):
        others = sum(values[vertex] for vertex in edges[number] if vertex != free)
        values[free] = (number - others) % len(keys)
    return PerfectHash(tabulation, values)
