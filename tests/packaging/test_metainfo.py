"""Checks the AppStream description with appstreamcli: test_metainfo.py APPSTREAMCLI FILE [HOMEPAGE]"""

import re
import subprocess
import sys
import xml.etree.ElementTree

validator, file, homepage = (*sys.argv[1:], "")[:3]
done = subprocess.run([validator, "validate", "--no-net", "--no-color", file], capture_output=True, text=True)
print(done.stdout + done.stderr)
findings = re.findall(r"^[EW]: \S+ (\S+)", done.stdout, re.MULTILINE)
if not homepage:
    # Newer versions warn of a missing home page.
    findings = [finding for finding in findings if finding != "url-homepage-missing"]
elif done.returncode != 0:
    findings.append(f"exit status {done.returncode}")
if "Validation" not in done.stdout:
    findings.append("nothing was validated")

addresses = [node.text for node in xml.etree.ElementTree.parse(file).getroot().iter() if node.tag in ("url", "image")]
wanted = [homepage, f"{homepage}/docs/window.png", f"{homepage}/docs/window-dark.png"] if homepage else []
if addresses != wanted:
    findings.append(f"addresses {addresses} in place of {wanted}")
sys.exit("; ".join(findings) or 0)
