#!/usr/bin/env python3
"""What people would write instead of `huxutil load --db`: zlib, plistlib and sqlite3 of Python's own
library, on one processor. The yardstick of docs/performance.md.

    fleet.py FOLDER DATABASE

It takes in less than huxutil does: of a file the machine, its applications, processes, users, disks,
volumes and network services, each row as it is; no findings, no entries, no other tables, no files
that it has already, and damaged ones end it. One transaction, and an index in the end on what the ready
queries look for.
"""
import os
import plistlib
import sqlite3
import sys
import zlib

TABLES = {
    "machine": "scanned_at, uuid, name, model_id, os_version, chip, memory_mb",
    "software": "name, version, is_64bit, modified_on, path, info, signed_by",
    "processes": "name, user, pid, ppid, command",
    "users": "name, full_name, uid, gid, home, shell",
    "disks": "model, disk_serial, size_bytes, interface, health",
    "volumes": "name, mount_point, file_system, size_bytes, free_bytes",
    "adapters": "name, interface, type, mac_address, ip_addresses",
}


def sections(data):
    """The texts of a file's sections by type."""
    start = int.from_bytes(data[-14:-6], "little")
    header = zlib.decompress(data[start:-14]).decode()
    found, group = {}, {}
    for line in header.split("\n"):
        if line.startswith("["):
            group = {}
        elif "=" in line:
            key, value = line.split("=", 1)
            group[key] = value
            if key == "type":
                found[value] = group
    return {
        kind: zlib.decompressobj().decompress(data[int(at["offset"]) : int(at["offset"]) + int(at["length"])])
        for kind, at in found.items()
    }


def tags(text):
    """(names of the tags around it, value, attributes with their properties) of every tag."""
    stack, attributes = [], None
    for line in text.decode("utf-8-sig", "replace").split("\n"):
        mark = line[:1]
        if mark in "+*" and mark:
            name, _, value = line[1:].partition("=")
            attributes = {}
            yield stack + [name], value, attributes
            if mark == "+":
                stack.append(name)
            last = None
        elif mark == "-":
            stack.pop()
        elif mark == "~":
            key, _, value = line[1:].partition("=")
            attributes[(last, key)] = value
        elif "=" in line and attributes is not None:
            last, _, attributes[last] = line.partition("=")


def snapshot(text):
    rows = {table: [] for table in TABLES}
    everything = list(tags(text))
    top = everything[0][2]
    one = {"/".join(path[1:]): (value, attributes) for path, value, attributes in everything}
    system = one["System/Computer-system"][1]
    adapter = one.get("Video/Adapters/video-adapter:1", ("", {}))[0]
    chip = one.get("Processors/Processor:1", ("", {}))[0]
    serial = one["System/Chassis"][1].get("serial")
    rows["machine"].append((
        top.get("timestamp"), system.get("uuid"), top.get("hostname"), system.get("model"),
        one["OS/os:1"][1].get("version", "").split(" ")[0], adapter if chip.startswith("CPU") else chip,
        int(one["Memory/General-info"][1].get("physical-memory", 0))))
    for path, value, of in everything:
        if len(path) == 3 and path[1] == "Software":
            rows["software"].append((value, of.get("version"), of.get("64bit-app"), of.get("inst-date"),
                                     of.get("path"), of.get("info"), None))
        elif len(path) == 3 and path[1] == "Processes":
            rows["processes"].append((value, of.get("user"), of.get("pid"), of.get("ppid"), of.get("cmd-line")))
        elif len(path) == 3 and path[1] == "User-accounts":
            rows["users"].append((value, of.get("fullname"), of.get("id"), of.get("group"), of.get("hdir"),
                                  of.get("shell")))
        elif len(path) == 4 and path[2] == "Physical-disks":
            rows["disks"].append((of.get("model"), of.get("serial"), of.get(("size", "base-value")),
                                  of.get("interface"), None))
        elif len(path) == 4 and path[2] == "Logical-disks":
            rows["volumes"].append((value, of.get("mount-point"), of.get((None, "file-sys")),
                                    of.get(("size", "base-value")), of.get(("free", "base-value"))))
        elif len(path) == 4 and path[1] == "Network":
            rows["adapters"].append((value, of.get("bsd-device-name"), of.get("type"), of.get("mac-address"),
                                     of.get("ip-address")))
    return serial, rows


def report(text, asset):
    rows = {table: [] for table in TABLES}
    types = {part["_dataType"]: part["_items"] for part in plistlib.loads(text)}
    record = list(tags(asset))[0][2]
    hardware, software = types["SPHardwareDataType"][0], types["SPSoftwareDataType"][0]
    memory = hardware.get("physical_memory", "0 GB").split(" ")
    rows["machine"].append((
        record.get("scan-attempt"), hardware.get("platform_UUID"), record.get("int-name"),
        hardware.get("machine_model"), software.get("os_version", "  ").split(" ")[1],
        hardware.get("chip_type") or hardware.get("cpu_type"), int(memory[0]) * 1024))
    for item in types.get("SPApplicationsDataType", []):
        rows["software"].append((
            item["_name"], item.get("version"), item.get("has64BitIntelCode"), str(item.get("lastModified")),
            item.get("path"), item.get("info"), ", ".join(item.get("signed_by", []))))
    for bus in ("SPNVMeDataType", "SPSerialATADataType"):
        for controller in types.get(bus, []):
            for item in controller.get("_items", []):
                rows["disks"].append((item.get("device_model"), item.get("device_serial"),
                                      item.get("size_in_bytes"), bus, item.get("smart_status")))
    for item in types.get("SPStorageDataType", []):
        rows["volumes"].append((item["_name"], item.get("mount_point"), item.get("file_system"),
                                item.get("size_in_bytes"), item.get("free_space_in_bytes")))
    for item in types.get("SPNetworkDataType", []):
        rows["adapters"].append((item["_name"], item.get("interface"), item.get("type"),
                                 item.get("Ethernet", {}).get("MAC Address"),
                                 ", ".join(item.get("ip_address", []))))
    return hardware.get("serial_number"), rows


def main(folder, database):
    connection = sqlite3.connect(database)
    inserts = {}
    for table, columns in TABLES.items():
        connection.execute(f"CREATE TABLE {table} (file, serial, {columns})")
        inserts[table] = f"INSERT INTO {table} VALUES (?, ?{', ?' * len(columns.split(','))})"
    count = 0
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as file:
            texts = sections(file.read())
        if "snapshot" in texts:
            serial, rows = snapshot(texts["snapshot"])
        else:
            serial, rows = report(texts["customdata"], texts["assetinfo"])
        for table, some in rows.items():
            connection.executemany(inserts[table], [(name, serial, *row) for row in some])
            count += len(some)
    connection.execute("CREATE INDEX software_name ON software (name, version)")
    connection.commit()
    print(count, "rows")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
