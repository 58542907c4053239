"""Writes results that frd_file.py has read as an Exodus II file, with netCDF4."""

import netCDF4

# Stems that are the custom in such files, by names of the solver; components end with x or xx.
STEMS = {"DISP": "disp", "VELO": "vel", "FORC": "reaction_force", "FLUX": "heat_flux",
         "STRESS": "stress", "TOSTRAIN": "strain", "NDTEMP": "temperature", "PE": "PEEQ",
         "ENER": "SENER"}
AXES = {"1": "x", "2": "y", "3": "z"}
TYPES = {2: "BEAM2", 3: "TRI3", 4: "TETRA4", 6: "WEDGE6", 8: "HEX8", 10: "TETRA10", 15: "WEDGE15",
         20: "HEX20"}
LENGTH = 33


def variable_name(field, component):
    """disp_x, stress_xy; what has no stem keeps its name, with the component's behind it."""
    stem = STEMS.get(field.name)
    if len(field.components) == 1:
        return stem or field.name
    if stem is None:
        return f"{field.name}-{component}"
    if len(field.components) == 3:
        return f"{stem}_{AXES[component[-1]]}"
    return f"{stem}_{'xz' if component[-2:] == 'ZX' else component[-2:].lower()}"


def texts(file, name, dimension, values):
    variable = file.createVariable(name, "S1", (dimension, "len_string"))
    variable[:] = netCDF4.stringtochar(
        netCDF4.numpy.array([value.encode() for value in values], f"S{LENGTH}"))


def variables_of(frames):
    """All names of variables, in the order in which they come."""
    names = {}
    for frame in frames:
        for field in frame.fields.values():
            for component in field.components:
                names.setdefault(variable_name(field, component))
    return list(names)


def write(path, nodes, elements, frames, labels):
    """`labels`: the nodes in the order in which they stand in the file. What has no value in a frame
    is never written there."""
    row = {label: index for index, label in enumerate(labels)}
    with netCDF4.Dataset(path, "w", format="NETCDF3_64BIT_OFFSET") as file:
        file.setncattr("api_version", netCDF4.numpy.float32(5.1))
        file.setncattr("version", netCDF4.numpy.float32(5.1))
        file.setncattr("floating_point_word_size", netCDF4.numpy.int32(8))
        file.setncattr("title", "values of another file")
        names = variables_of(frames)
        blocks = sorted({len(corners) for corners in elements.values()})
        for name, size in (("len_string", LENGTH), ("time_step", None), ("num_dim", 3),
                           ("num_nodes", len(labels)), ("num_elem", len(elements)),
                           ("num_el_blk", len(blocks)), ("num_nod_var", len(names))):
            file.createDimension(name, size)
        for axis, letter in enumerate("xyz"):
            file.createVariable("coord" + letter, "f8", ("num_nodes",))[:] = [
                nodes[label][axis] for label in labels]
        file.createVariable("node_num_map", "i4", ("num_nodes",))[:] = labels
        write_elements(file, elements, blocks, row)
        times = file.createVariable("time_whole", "f8", ("time_step",))
        texts(file, "name_nod_var", "num_nod_var", names)
        values = {name: file.createVariable(f"vals_nod_var{number}", "f8",
                                            ("time_step", "num_nodes"))
                  for number, name in enumerate(names, 1)}
        for step, frame in enumerate(frames):
            times[step] = frame.value
            for field in frame.fields.values():
                write_field(field, step, row, values)


def write_elements(file, elements, blocks, row):
    file.createVariable("eb_status", "i4", ("num_el_blk",))[:] = [1] * len(blocks)
    ids = file.createVariable("eb_prop1", "i4", ("num_el_blk",))
    ids.setncattr("name", "ID")
    ids[:] = range(1, len(blocks) + 1)
    order = []
    for number, size in enumerate(blocks, 1):
        members = [label for label, corners in elements.items() if len(corners) == size]
        order += members
        file.createDimension(f"num_el_in_blk{number}", len(members))
        file.createDimension(f"num_nod_per_el{number}", size)
        connect = file.createVariable(f"connect{number}", "i4",
                                      (f"num_el_in_blk{number}", f"num_nod_per_el{number}"))
        connect.setncattr("elem_type", TYPES[size])
        connect[:] = [[row[node] + 1 for node in elements[label]] for label in members]
    file.createVariable("elem_num_map", "i4", ("num_elem",))[:] = order


def write_field(field, step, row, values):
    for place, component in enumerate(field.components):
        column = netCDF4.numpy.ma.masked_all(len(row))
        for label, numbers in field.values.items():
            column[row[label]] = numbers[place]
        values[variable_name(field, component)][step, :] = column
