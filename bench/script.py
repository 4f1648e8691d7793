#!/usr/bin/env python3
"""What somebody would write in an afternoon: the profile read, the applications listed, one file.

    script.py OUTPUT        runs the profiler once, for all data types
"""
import json
import plistlib
import subprocess
import sys
import zlib

profiler = ["system_profiler", "-detailLevel", "full", "-xml"]
profile = plistlib.loads(subprocess.run(profiler, capture_output=True, check=True).stdout)
software = []
for entry in profile:
    if entry.get("_dataType") != "SPApplicationsDataType":
        continue
    for item in entry["_items"]:
        modified = item.get("lastModified")
        software.append({
            "name": item.get("_name", ""),
            "version": item.get("version", ""),
            "path": item.get("path", ""),
            "installed": modified.strftime("%Y%m%d") if modified else "",
            "store": item.get("obtained_from") == "mac_app_store",
            "info": item.get("info", ""),
            "runtime": item.get("runtime_environment", ""),
        })
software.sort(key=lambda application: application["name"].lower())
text = json.dumps({"Software": software}).encode()
with open(sys.argv[1], "wb") as file:
    file.write(zlib.compress(text, 9))
