"""Machines of any size for measure.py, the same ones each time: what the stand-in tools print."""
import os
import random

PROLOG = """<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
"""
EPILOGUE = "</array>\n</plist>\n"

# As shell scripts, since real tools are processes too. MACHINE is a folder with the documents.
TOOLS = {
    "system_profiler": """
for name; do type=$name; done
case $type in SP*) ;; *) type=SPApplicationsDataType ;; esac
if [ -f "$MACHINE/$type" ]; then exec cat "$MACHINE/$type"; fi
exec sed "s/>TYPE</>$type</" "$MACHINE/nothing"
""",
    "ps": "echo '501 /usr/libexec/daemon --flag --other'\n",
    "env": """
if [ $# -gt 0 ]; then exec /usr/bin/env "$@"; fi
if [ -f "$MACHINE/env" ]; then exec cat "$MACHINE/env"; fi
echo HOME=/Users/ann
""",
    "ls": """
if [ "$*" = "-1 /Users/" ] && [ -f "$MACHINE/users" ]; then exec cat "$MACHINE/users"; fi
""",
    "dscl": """
name=${3##*/}
printf 'NFSHomeDirectory: /Users/%s\\nPrimaryGroupID: 20\\nRealName: Ann Example\\n' "$name"
printf 'RecordName: %s\\nRecordType: dsRecTypeStandard:Users\\nUniqueID: 501\\nUserShell: /bin/sh\\n' "$name"
""",
    "ioreg": "printf 00000000-0000-1000-8000-000000000000\n",
    "diskutil": "exit 1\n",
}


def write_tools(folder):
    os.makedirs(folder)
    for name, script in TOOLS.items():
        path = os.path.join(folder, name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n" + script)
        os.chmod(path, 0o755)


def dictionary(entries, indent):
    lines = [indent + "<dict>"]
    for key, value in entries:
        lines.append(f"{indent}\t<key>{key}</key>")
        if isinstance(value, list):
            lines.append(indent + "\t<array>")
            lines += [f"{indent}\t\t<string>{text}</string>" for text in value]
            lines.append(indent + "\t</array>")
        elif isinstance(value, int):
            lines.append(f"{indent}\t<integer>{value}</integer>")
        elif key == "lastModified":
            lines.append(f"{indent}\t<date>{value}</date>")
        else:
            lines.append(f"{indent}\t<string>{value}</string>")
    lines.append(indent + "</dict>\n")
    return "\n".join(lines)


def application(number, chance):
    maker = f"Maker {chance.randrange(300)}, Inc."
    folder = f"/Applications/Folder {chance.randrange(50)}/Application {number}.app"
    version = f"{chance.randrange(20)}.{chance.randrange(100)}.{chance.randrange(1000)}"
    year = 2005 + chance.randrange(15)
    return [
        ("_name", f"Application {number}"),
        ("app_store", "no"),
        ("has64BitIntelCode", "yes"),
        ("info", f"{version}, {'Copyright' if number % 2 else '©'} 2005-{year} {maker} All rights reserved &amp; "
                 "so on in all countries of the world and beyond."),
        ("lastModified", f"{year}-{1 + chance.randrange(12):02}-{1 + chance.randrange(28):02}T"
                         f"{chance.randrange(24):02}:{chance.randrange(60):02}:{chance.randrange(60):02}Z"),
        ("location", folder),
        ("obtained_from", "identified_developer"),
        ("path", folder),
        ("runtime_environment", "arch_x86"),
        ("signed_by", [f"Developer ID Application: {maker}", "Developer ID Certification Authority",
                       "Apple Root CA"]),
        ("version", version),
    ]


def volume(number, chance):
    return [
        ("_name", f"Volume {number}"),
        ("bsd_name", f"disk0s{number}"),
        ("file_system", "Journaled HFS+"),
        ("free_space_in_bytes", chance.randrange(10**12)),
        ("iocontent", "Apple_HFS"),
        ("mount_point", f"/Volumes/Volume {number}"),
        ("size_in_bytes", 10**12),
    ]


def write_type(folder, name, items, file_name=None):
    with open(os.path.join(folder, file_name or name), "w", encoding="utf-8") as file:
        file.write(PROLOG + f"\t<dict>\n\t\t<key>_dataType</key>\n\t\t<string>{name}</string>\n"
                   "\t\t<key>_items</key>\n\t\t<array>\n")
        file.writelines(items)
        file.write("\t\t</array>\n\t</dict>\n" + EPILOGUE)


def write_machine(folder, applications=0, volumes=0, users=0, environment=0):
    """A folder for MACHINE; `environment` is the length of one variable in bytes."""
    os.makedirs(folder)
    chance = random.Random(17)
    write_type(folder, "TYPE", [], file_name="nothing")  # as of a Mac without printers
    if applications:
        write_type(folder, "SPApplicationsDataType",
                   (dictionary(application(i, chance), "\t\t\t") for i in range(applications)))
    if volumes:
        parts = "".join(dictionary(volume(i, chance), "\t\t\t\t\t\t\t") for i in range(volumes))
        drive = ("\t\t\t<dict>\n\t\t\t\t<key>_items</key>\n\t\t\t\t<array>\n\t\t\t\t\t<dict>\n"
                 "\t\t\t\t\t\t<key>device_model</key>\n\t\t\t\t\t\t<string>Drive</string>\n"
                 "\t\t\t\t\t\t<key>volumes</key>\n\t\t\t\t\t\t<array>\n" + parts +
                 "\t\t\t\t\t\t</array>\n\t\t\t\t\t</dict>\n\t\t\t\t</array>\n\t\t\t</dict>\n")
        write_type(folder, "SPNVMeDataType", [drive])
    with open(os.path.join(folder, "users"), "w") as file:
        file.writelines(f"user{i}\n" for i in range(users))
    if environment:
        with open(os.path.join(folder, "env"), "w") as file:
            file.write("LONG=" + "x" * environment + "\n")
