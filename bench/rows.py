"""The rows of the table: what is shown under which name, in which unit, against which bar."""

import dataclasses
import typing

PEER_STORES = ["HDF5", "netCDF", "Exodus II", "CGNS", "MED"]


def gigabytes(value):
    return f"{value / 1e9:.2f} GB/s"


def megabytes_per_second(value):
    return f"{value / 1e6:.0f} MB/s"


def millions(value):
    return f"{value / 1e6:.2f} M/s"


def seconds(value):
    for factor, unit in ((1e9, "ns"), (1e6, "µs"), (1e3, "ms")):
        if value * factor < 1000:
            return f"{value * factor:.3g} {unit}"
    return f"{value:.3g} s"


def megabytes(value):
    return f"{value:.0f} MB"


@dataclasses.dataclass
class Row:
    name: str
    title: str
    unit: typing.Callable
    bar: str
    met: typing.Callable  # of the results: True, False, or None where there is nothing to compare
    limits: tuple = ("unions alone", "read and write", "buffer at hand",
                     "plain file", "mapped file", "plain loop", "plain merge", "look-ups alone",
                     "labels read", "fgets, strtod", "mmap, from_chars",
                     "plain copy", "plain transfers", "the deck")


def fastest(results, row):
    found = [results.get(row, who) for who in PEER_STORES]
    return max((value for value in found if value is not None), default=None)


def written(row):
    def met(results):
        peer, plain, ours = fastest(results, row), results.get(row, "plain file"), results.get(row)
        return None if peer is None else ours >= peer and ours >= 0.8 * plain

    return met


def read_first(row):
    def met(results):
        peer, checked = fastest(results, row), results.get(row, "HDF5 checksum")
        ours = results.get(row)
        return None if peer is None or checked is None else ours >= 0.5 * peer and ours > checked

    return met


def read_later(row):
    def met(results):
        peer = fastest(results, row)
        return None if peer is None else results.get(row) >= 0.95 * peer

    return met


def at_least(row, bound):
    return lambda results: results.get(row) >= bound


def below(row, bound):
    return lambda results: results.get(row) < bound


def near_loop(row):
    return lambda results: results.get(row) <= 1.1 * results.get(row, "plain loop")


def bulk(name, what):
    return [
        Row(name + ".write", what + " appended and committed", gigabytes,
            "fastest peer; 0.8 of pwrite", written(name + ".write")),
        Row(name + ".read1", what + " read, first time, verified", gigabytes,
            "0.5 of the fastest peer; above HDF5 with checksums", read_first(name + ".read1")),
        Row(name + ".read2", what + " read again", gigabytes,
            "0.95 of the fastest peer", read_later(name + ".read2")),
    ]


def fields(nodes):
    what = f"a vector field at {nodes}"
    return bulk("fields", what) + [
        Row("fields.whole1", what + " read as a whole, first time, verified", gigabytes,
            "0.5 of the fastest peer; above HDF5 with checksums", read_first("fields.whole1")),
        Row("fields.whole2", what + " read as a whole again", gigabytes,
            "0.95 of the fastest peer", read_later("fields.whole2")),
    ]


def algebra(shape, title, bounds):
    return [Row(f"algebra.{shape}.{operation}", f"{operation} of {title}", seconds,
                "below " + seconds(bound), below(f"algebra.{shape}.{operation}", bound))
            for operation, bound in bounds.items()]


def named_sets(counts):
    rows = []
    for count in counts:
        rows.append(Row(f"sets.{count}.write", f"{count:,} named sets of 100, written, each",
                        seconds, "at most 3 µs", below(f"sets.{count}.write", 3.0e-6)))
        rows.append(Row(f"sets.{count}.first", f"of {count:,} sets the first read after opening",
                        seconds, "within 1 ms", below(f"sets.{count}.first", 1e-3)))
    return rows


SCOPED_NAMES = {
    # form: (what the name is, look-ups until it is found)
    "plain": ("as it stands in the map", 1),
    "instance": ("of an instance", 1),
    "joined": ("with separators", 2),
    "model": ("that lacks the model's", 2),
    "bare": ("that has the model's", 4),
    "elset": ("of a surface from an element set", 5),
    "nset": ("of a surface from a node set", 6),
    "quoted": ("with quotes inside", 4),
    "absent": ("that is nowhere", 3),
}


def scoped_names(count):
    def resolved(row, tried):
        # The way to the model and the model's own name are two look-ups more.
        def met(results):
            ours, few = results.get(row), results.get(row, "ours, of 1,000")
            alone = results.get(row, "look-ups alone")
            return ours <= 1.25 * alone * (tried + 2) / tried and ours <= 2 * few

        return met

    return [Row(f"names.{form}", f"scoped name {what}, of {count:,}", seconds,
                f"1.25 of {tried} + 2 look-ups; twice that of 1,000 names",
                resolved(f"names.{form}", tried))
            for form, (what, tried) in SCOPED_NAMES.items()]


def shells(count):
    values = 4 * 20 * count

    def written(results):
        return results.get("shells.write") < 5 * results.get("shells.write", "plain file")

    def gathered(results):
        return (results.get("shells.gather") < 50e-9 * values
                and results.peak("shells.gather") < 24e-6 * values)

    of = f"of {count:,} shell sections of 20 layers, 4 kinds"
    return [
        Row("shells.gather", "layers gathered, " + of, seconds,
            f"50 ns and 24 bytes a value: {24e-6 * values:.0f} MB", gathered),
        Row("shells.write", "the same written in bulk, committed", seconds, "5 times the plain file",
            written),
        Row("shells.read", "all layers of one of these sections read", seconds, "below 0.2 ms",
            below("shells.read", 0.2e-3)),
    ]


def shell_fields(elements):
    def near(row, factor, who):
        return lambda results: results.get(row) <= factor * results.get(row, who)

    of = f"of 8 layers of {elements:,} elements"
    return [
        Row("shells.fields.write", "thicknesses by element " + of + ", written from table fields",
            seconds, "3 times reading and writing by plain transfers",
            near("shells.fields.write", 3, "read and write")),
        Row("shells.fields.read", "the same read, section by section", seconds,
            "1.5 of plain transfers", near("shells.fields.read", 1.5, "plain transfers")),
    ]


def shell_deck(count):
    # Five numbers of each layer are gathered, and what the deck says of it.
    most = 100 + (5 * 24 + 32) * 20 * count / 1e6

    def translated(results):
        return results.get("shells.translate") < 10 and results.peak("shells.translate") < most

    of = f"a deck of {count:,} shell sections of 20 layers"
    return [
        Row("shells.translate", of + " to a document", seconds,
            f"below 10 s; 152 bytes a layer and 100 MB: {most:.0f} MB", translated),
        Row("shells.size", "size of that document", megabytes, "twice the deck",
            lambda results: (results.get("shells.size")
                             < 2 * results.get("shells.size", "the deck"))),
        Row("shells.layup", "`kovsim layup` of one of these sections, the whole process", seconds,
            "below 0.5 s", below("shells.layup", 0.5)),
    ]


def material_tables(count):
    of = f"of {count:,} rows of 12 columns"
    return [
        Row("tables.save", "material table " + of + ", saved and committed", seconds,
            "below 0.25 s", below("tables.save", 0.25)),
        Row("tables.append", "as many rows appended in 10 blocks, committed", seconds,
            "below 0.25 s", below("tables.append", 0.25)),
        Row("tables.single", "one row appended, each", seconds, "below 1 ms",
            below("tables.single", 1e-3)),
        Row("tables.read", "the whole table read as rows", seconds, "below 0.25 s",
            below("tables.read", 0.25)),
    ]


def extrapolation(count):
    def as_fast(row):
        # A copy reads and writes as much, and does nothing with it.
        def met(results):
            ours, loop = results.get(row), results.get(row, "plain loop")
            blas = results.get(row, "BLAS, each")
            return (ours <= 0.5 * loop and ours <= 3 * results.get(row, "plain copy")
                    and (blas is None or ours < blas))

        return met

    of = f"6 components at 8 points of {count:,} elements carried to 8 nodes, "
    bar = "half the plain loop, 3 plain copies, BLAS"
    return [Row("extrapolation." + name, of + name + " precision", seconds, bar,
                as_fast("extrapolation." + name)) for name in ("single", "double")]


def labels(nodes, counts):
    rows = []
    for count in counts:
        row = f"labels.{count}."
        of = f"of {nodes:,} nodes in {count:,} instance" + ("s" if count > 1 else "")
        rows += [
            Row(row + "instance", "instance of an ordinal, " + of, seconds, "below 1 µs",
                below(row + "instance", 1e-6)),
            Row(row + "label", "user label of an ordinal, " + of, seconds, "below 2 µs",
                below(row + "label", 2e-6)),
            Row(row + "ordinal", "ordinal of a user label, " + of, seconds, "below 2 µs",
                below(row + "ordinal", 2e-6)),
            Row(row + "info", "instance and label with a labeler for each call, " + of, seconds,
                "50 µs, and 3 µs for each instance", below(row + "info", 50e-6 + 3e-6 * count)),
        ]
    table = 16 * nodes / 1e6

    def mapped(results):
        return (results.get("labels.map") < 0.1e-6 * nodes
                and results.peak("labels.map") < 1.25 * table)

    return rows + [
        Row("labels.map", f"{nodes:,} nodes of two documents matched by label", seconds,
            f"0.1 µs a node; 1.25 of the table: {1.25 * table:.0f} MB", mapped),
        Row("labels.translate", f"a set of {nodes:,} nodes translated, order kept", seconds,
            "0.05 µs a node", below("labels.translate", 0.05e-6 * nodes)),
    ]


def parts(elements):
    def held(row, bound, most):
        return lambda results: results.get(row) < bound and results.peak(row) < most

    of = f"of a model of {elements:,} hexahedra"
    # What is compared at a time: labels and ordinals of both documents.
    labels = 30 + 16 * 1.02 * elements / 1e6
    return [
        Row("parts.half", "sub-model of the first half " + of, seconds, "below 10 s and 100 MB",
            held("parts.half", 10, 100)),
        Row("parts.odd", "sub-model of every second element " + of, seconds,
            "below 20 s and 100 MB", held("parts.odd", 20, 100)),
        Row("parts.map", f"two models of {elements:,} hexahedra compared by label", seconds,
            f"below 5 s; 16 bytes a label: {labels:.0f} MB", held("parts.map", 5, labels)),
    ]


def classes(elements):
    def within(row, factor, who):
        return lambda results: results.get(row) <= factor * results.get(row, who)

    return [
        Row("classes.ranges", f"classes of {elements:,} elements in 20 ranges", seconds,
            "twice that of a thousandth of them",
            within("classes.ranges", 2, "ours, a thousandth")),
        Row("classes.scattered", f"classes of {elements:,} elements, 20 types scattered", seconds,
            "1.5 of the unions alone", within("classes.scattered", 1.5, "unions alone")),
    ]


def checked(elements):
    def within(row):
        def met(results):
            ours, few = results.get(row), results.get(row, "ours, few elements")
            return ours < 5 and ours <= 2 * few

        return met

    of = f"of {elements:,} elements in 1,000 classes, 10,000 shells, 1,000 fields"
    bar = "5 s; twice that of as many runs of one element"
    return [
        Row("checker.sound", "a document " + of + ", certified", seconds, bar,
            within("checker.sound")),
        Row("checker.faulty", "the same, no class with a section", seconds, bar,
            within("checker.faulty")),
    ]


def copied(nodes):
    def of_plain(row, part):
        return lambda results: results.get(row) >= part * results.get(row, "read and write")

    return [
        Row("copy", f"{nodes:,} nodes x 3 copied from a drawer to another", gigabytes,
            "0.8 of reading and writing", of_plain("copy", 0.8)),
        Row("copy.permuted", "the same, permuted", gigabytes, "0.6 of reading and writing",
            of_plain("copy.permuted", 0.6)),
    ]


def ROWS(sizes):
    nodes, elements = f"{sizes['nodes']:,} nodes", f"{sizes['elements']:,} hexahedra"
    members = f"{sizes['members']:,} members"
    # The labels of the deck's nodes and elements as 32-bit numbers.
    tables = 4 * 2 * sizes["deck_nodes"] / 1e6
    return [
        *bulk("coordinates", "coordinates of " + nodes),
        Row("gather", f"{sizes['picked']:,} random nodes in one transfer", millions,
            "at least 5 M/s", at_least("gather", 5e6)),
        Row("strided", "1 node in 10", millions, "at least 40 M/s", at_least("strided", 40e6)),
        *bulk("connectivity", "connectivity of " + elements),
        *fields(nodes),
        Row("inverse", "inverse connectivity of " + elements, seconds, "within 1.1 of the loop",
            near_loop("inverse")),
        Row("inverse.permuted", "the same, permuted", seconds, "within 1.1 of the loop",
            near_loop("inverse.permuted")),
        *classes(sizes["members"]),
        *checked(sizes["elements"]),
        *copied(sizes["nodes"]),
        *algebra("range", f"ranges of {members}",
                 dict(union=1e-6, intersection=1e-6, difference=1e-6)),
        *algebra("runs", f"{members} in runs of about 100",
                 dict(union=1.5e-3, intersection=1.5e-3, difference=1.5e-3)),
        *algebra("random", f"{members}, one in ten at random",
                 dict(union=4e-3, intersection=11e-3, difference=4e-3)),
        Row("text", "keyword text to a committed document, one core", megabytes_per_second,
            "at least 200 MB/s", at_least("text", 200e6)),
        Row("memory", f"peak memory while translating {sizes['deck_nodes']:,} nodes", megabytes,
            f"100 MB and twice the labels: {100 + 2 * tables:.0f} MB",
            below("memory", 100 + 2 * tables)),
        *parts(sizes["elements"]),
        Row("open", f"opening a document of {nodes}, reading one node", seconds, "below 0.6 ms",
            below("open", 0.6e-3)),
        *named_sets(sizes["sets"]),
        *labels(sizes["labels"], sizes["instances"]),
        *shells(sizes["shells"]),
        *shell_fields(sizes["fields"]),
        *shell_deck(sizes["shells"]),
        *scoped_names(sizes["names"]),
        *material_tables(sizes["rows"]),
        *extrapolation(min(sizes["elements"], 1_000_000)),
    ]
