# SPDX-License-Identifier: GPL-3.0-or-later
"""The attacks of led-astray. The user u has /home/u and /data_bak/u; v has letters; the rest is
root's."""
from dataclasses import dataclass, field

LETTER = "a letter to v"
OURS, BACK = "/home/u", "/data_bak/u"
NOTE = "until moved_to /etc/.varnholt.unfinished"
# A folder d and a link to a folder of root's, which change places, with "again" all the time.
TRAPS = f"mkdir d {BACK}/d; ln -s /srv trap; ln -s /srv {BACK}/trap; "
TURN, BACK_TURN = (f"exchange {folder}/d {folder}/trap" for folder in (OURS, BACK))
# So many files that a command is still at work when it has come to the middle one. The order in
# which it takes them is not known, so that v has a letter of the first and of the last name.
MANY = "mkdir docs; cd docs; touch first; touch $(seq 300); touch last; cd; "
FIFOS = "mkdir fifos; cd fifos; mkfifo $(seq 300); cd; "


@dataclass(frozen=True)
class Attack:
    title: str
    profile: str
    user: str = ""  # What the user does before the run, and
    root: str = ""  # what root has done before that: shell commands.
    racer: str = ""  # What the user does during the run: steps for the racer.
    earlier: bool = False  # Whether another run has come before, and
    then: str = ""  # what the user does after it.
    disks: tuple[str, ...] = ()  # FOLDER=SIZE: these folders are file systems of their own.
    limit: str = ":"  # The limit under which the caller starts the run.
    program: str = "varnholt --save_symlink"
    holds: dict[str, str] = field(default_factory=dict)  # What must be read there in the end.
    quick: bool = False  # Whether a race is also for those who are in a hurry.
    promised: bool = True  # Whether the manual promises that this attack never wins.


def makes(source: str, path: str) -> str:
    return f"lnk,dir,{source},{path},symbolic\n"


def undoes(path: str) -> str:
    return f"lnk,dir,/nothing,{path},symbolic|deleted\n"


# Not enough room for a copy leaves works unfinished: an undoing and an adoption.
SHORT_UNDOING = {
    "profile": undoes(f"{OURS}/d/docs"), "earlier": True, "disks": ("home/u=1m",),
    "root": "mkdir /srv/docs; echo root >/srv/docs/big",
    "user": TRAPS + f"ln -s {BACK}/docs d; mkdir {BACK}/docs; cd {BACK}; mkfifo fifo;"
                    "head -c 2M /dev/zero >docs/big"}
SHORT_ADOPTION = {
    "profile": makes(f"{BACK}/d/docs", f"{OURS}/docs"), "earlier": True,
    "disks": ("home/u=4m", "data_bak/u=1m"),
    "root": "mkdir /srv/docs; echo root >/srv/docs/big",
    "user": TRAPS + "mkdir docs; mkfifo fifo; head -c 2M /dev/zero >docs/big"}


def limited(limit: str, *disks: str) -> Attack:
    """Returns a run under a limit; data that cannot be moved must leave the source as it was."""
    return Attack(f"`{limit}`" + (", between file systems" if disks else ""),
                  makes(f"{BACK}/x", f"{OURS}/x"), f"echo new >x; echo old >{BACK}/x", limit=limit,
                  disks=disks, holds={f"{BACK}/x": "old|new"})


AT_ONCE = [
    Attack("none: all that is legitimate works",
           makes(f"{BACK}/new", f"{OURS}/a/b/new") + makes(f"{BACK}/x", f"{OURS}/work/x")
           + makes(f"{OURS}/store/y", f"{OURS}/y") + makes("/data/u/z", f"{OURS}/z")
           + makes(f"{BACK}/far", "/home/far/far") + undoes(f"{OURS}/undone")
           + undoes(f"{OURS}/own"),
           f"echo new >{BACK}/new; mkdir real {BACK}/store; ln -s real work; echo x >work/x;"
           f"ln -s {BACK}/store store; echo y >y; mkdir z; echo z >z/z; echo far >/home/far/far;"
           f"ln -s {BACK}/new own", "ln -s data_bak /data; mkdir /srv/s; echo s >/srv/s/s;"
           f"ln -s /srv/s {OURS}/undone", disks=("home/far=1m",),
           holds={f"{OURS}/a/b/new": "new", f"{BACK}/x": "x", f"{OURS}/real/x": "x",
                  f"{OURS}/y": "y", f"{BACK}/store/y": "y", f"{OURS}/z/z": "z", f"{BACK}/z/z": "z",
                  f"{BACK}/far": "far", "/home/far/far": "far", f"{OURS}/undone/s": "s",
                  f"{OURS}/own": "new"}),
    Attack("a link on the way to a new link", makes(f"{BACK}/env.sh", f"{OURS}/bin/env.sh"),
           "ln -s /etc/profile.d bin"),
    Attack("the same by way of two relative links", makes(f"{BACK}/env.sh", f"{OURS}/bin/env.sh"),
           "ln -s ../../etc etc; ln -s etc/profile.d bin"),
    Attack("the same by way of /proc/self/root", makes(f"{BACK}/env.sh", f"{OURS}/bin/env.sh"),
           "ln -s /proc/self/root/etc/profile.d bin"),
    Attack("a link on the way to missing folders", makes(f"{BACK}/env.sh", f"{OURS}/new/a/env.sh"),
           "ln -s /etc new"),
    Attack("a link in a folder of a group, on the way",
           makes(f"{BACK}/env.sh", "/srv/team/bin/env.sh"), "ln -s /etc/profile.d /srv/team/bin",
           "mkdir -m 2775 /srv/team; chgrp 1003 /srv/team"),
    Attack("a link in a sticky folder, on the way", makes(f"{BACK}/env.sh", "/tmp/bin/env.sh"),
           "ln -s /etc/profile.d /tmp/bin"),
    Attack("a link that root has made, moved to another name",
           makes("/srv/tools", f"{OURS}/tools") + makes(f"{BACK}/tool", f"{OURS}/bin/tool"),
           root="mkdir /srv/tools; echo root >/srv/tools/tool", earlier=True,
           then="mv bin away; mv tools bin", promised=False),
    Attack("a link that has become root's in a copy, on the way",
           undoes(f"{OURS}/x") + makes(f"{BACK}/env.sh", f"{OURS}/tools/bin/env.sh"),
           f"mkdir {BACK}/x; ln -s /etc/profile.d {BACK}/x/bin", f"ln -s {BACK}/x {OURS}/x",
           earlier=True, then="mv tools old; mv x tools"),
    Attack("a link on the way to data", makes(f"{BACK}/bin", f"{OURS}/tools/bin"),
           "ln -s /usr/local tools"),
    Attack("a link on the way to letters", makes(f"{BACK}/docs", f"{OURS}/tools/Documents"),
           "ln -s /home/v tools"),
    Attack("a link on the way to a source", makes(f"{BACK}/conf/ssh", f"{OURS}/ssh"),
           f"mkdir ssh; ln -s /etc {BACK}/conf"),
    Attack("another link in the place of one to be undone", undoes(f"{OURS}/docs"),
           "ln -s /home/v/Documents docs"),
    Attack("a link on the way to a link to be undone", undoes(f"{OURS}/d/localtime"),
           "ln -s /etc d"),
    Attack("a link on the way to the content of one to be undone", undoes(f"{OURS}/docs"),
           f"ln -s /home/v {BACK}/d", f"ln -s {BACK}/d/Documents {OURS}/docs"),
    Attack("a set-user-ID program to be copied", undoes(f"{OURS}/run"),
           f"cp /usr/bin/true {BACK}/run; chmod 6755 {BACK}/run; ln -s {BACK}/run ."),
    Attack("a link on the way to an unfinished copy", **SHORT_UNDOING,
           then=f"(cat /srv/docs/big; echo u) >{BACK}/docs/big; mv d away; ln -s /srv d"),
    Attack("a link on the way to an unfinished move", **SHORT_ADOPTION,
           then=f"(cat /srv/docs/big; echo u) >docs.bak_0/big; cd {BACK}; mv d away; ln -s /srv d"),
    Attack("files without end to compare", **SHORT_UNDOING,
           then=f"mv d/docs d/away; mkdir d/docs; truncate -s 4T d/docs/big {BACK}/docs/big"),
    Attack("a lease on a file to be copied", undoes(f"{OURS}/x"),
           f"echo u >{BACK}/x; ln -s {BACK}/x .", racer=f"lease {BACK}/x",
           promised=False),
    Attack("a lease on a file to be moved between file systems", makes(f"{BACK}/x", f"{OURS}/x"),
           "echo u >x", disks=("data_bak/u=1m",), racer=f"lease {OURS}/x", promised=False),
    Attack("a lease on a file to compare", **SHORT_UNDOING, racer=f"lease {BACK}/docs/big"),
    *(Attack(f"locks, when /root has the mode {mode}", "", "", f"chmod {mode} /root",
             f"hold /root hold /etc hold /etc/.varnholt.ini hold /") for mode in (700, 550, 755)),
    *(limited(f"ulimit -n {number}") for number in (3, 4, 5, 6, 10)),
    limited("ulimit -f 0"), limited("ulimit -f 0", "data_bak/u=1m"),
    limited("ulimit -n 10", "data_bak/u=1m"),
]

UNDER_WAY = [
    Attack("the folder of a new link, all the time", makes(f"{BACK}/x", f"{OURS}/d/x"), TRAPS,
           racer=TURN + " again"),
    Attack("the folder of ten new links, all the time",
           "".join(makes(f"{BACK}/{number}", f"{OURS}/d/{number}") for number in range(10)), TRAPS,
           racer=TURN + " again"),
    Attack("the folder above missing ones, all the time", makes(f"{BACK}/x", f"{OURS}/d/a/b/x"),
           TRAPS, racer=TURN + " again"),
    Attack("the folder of a link to be replaced, all the time", makes(f"{BACK}/x", f"{OURS}/d/x"),
           TRAPS + "ln -s /nothing d/x", "echo root >/srv/x", TURN + " again"),
    Attack("the folder of data, all the time", makes(f"{BACK}/x", f"{OURS}/d/x"),
           TRAPS + "echo u >d/x", "echo root >/srv/x", TURN + " again", quick=True),
    Attack("the folder behind the user's own link, all the time",
           makes(f"{BACK}/x", f"{OURS}/work/x"), TRAPS + "ln -s d work; echo u >d/x",
           "echo root >/srv/x", TURN + " again"),
    Attack("the user's own link on the way, all the time", makes(f"{BACK}/x", f"{OURS}/work/x"),
           TRAPS + "ln -s d work; echo u >d/x", "echo root >/srv/x",
           f"exchange {OURS}/work {OURS}/trap again"),
    Attack("the folder of a link to be undone, all the time", undoes(f"{OURS}/d/x"),
           TRAPS + f"echo u >{BACK}/x; ln -s {BACK}/x d", "echo root >/srv/x", TURN + " again"),
    Attack("the link to be undone, all the time", undoes(f"{OURS}/x"),
           f"mkdir {BACK}/x; ln -s {BACK}/x .; ln -s /home/v/Documents trap",
           racer=f"exchange {OURS}/x {OURS}/trap again"),
    Attack("the folder of data, once the note is there", makes(f"{BACK}/x", f"{OURS}/d/x"),
           TRAPS + "echo u >d/x", "echo root >/srv/x", f"{NOTE} {TURN}"),
    Attack("the folder of a link to be undone, once the note is there", undoes(f"{OURS}/d/x"),
           TRAPS + f"echo u >{BACK}/x; ln -s {BACK}/x d", "echo root >/srv/x", f"{NOTE} {TURN}"),
    Attack("the folder of a link to be undone, once the link is deleted", undoes(f"{OURS}/d/x"),
           TRAPS + f"echo u >{BACK}/x; ln -s {BACK}/x d", "echo root >/srv/x",
           f"until deleted {OURS}/d/x {TURN}"),
    Attack("the folder of data, once that is at its source: the way back",
           makes(f"{BACK}/x", f"{OURS}/d/x"), TRAPS + "echo u >d/x", "echo root >/srv/x",
           f"until moved_to {BACK}/x {TURN}"),
    Attack("the source's folder, all the time", makes(f"{BACK}/d/x", f"{OURS}/x"),
           TRAPS + "echo u >x", "echo root >/srv/x", BACK_TURN + " again"),
    Attack("the folder of a source that leads nowhere, all the time",
           makes(f"{BACK}/d/x", f"{OURS}/x"), TRAPS + f"echo u >x; ln -s /nothing {BACK}/d/x",
           "ln -s /nothing /srv/x", BACK_TURN + " again"),
    Attack("the source's folder, once the note is there", makes(f"{BACK}/d/x", f"{OURS}/x"),
           TRAPS + f"echo u >x; echo old >{BACK}/d/x", "echo root >/srv/x", f"{NOTE} {BACK_TURN}"),
    Attack("the source's folder, once the data is set aside", makes(f"{BACK}/d/x", f"{OURS}/x"),
           TRAPS + f"echo u >x; echo old >{BACK}/d/x", "echo root >/srv/x",
           f"until moved_from {OURS}/x {BACK_TURN}"),
    Attack("the source's folder, once the source is deleted", makes(f"{BACK}/d/x", f"{OURS}/x"),
           TRAPS + f"echo u >x; echo old >{BACK}/d/x", "mkdir /srv/x",
           f"until deleted {BACK}/d/x {NOTE} {BACK_TURN}"),
    Attack("a link to /root at the backup's name", makes(f"{BACK}/x", f"{OURS}/x"), "echo u >x",
           racer=f"{NOTE} within 3000 link /root {OURS}/x.bak_0"),
    Attack("a link to /root at the source, once that is deleted", makes(f"{BACK}/x", f"{OURS}/x"),
           f"echo u >x; echo old >{BACK}/x",
           racer=f"until deleted {BACK}/x {NOTE} link /root {BACK}/x"),
    Attack("a link to /etc/passwd, once the link to a file is deleted", undoes(f"{OURS}/x"),
           f"echo u >{BACK}/x; ln -s {BACK}/x .",
           racer=f"until deleted {OURS}/x link /etc/passwd {OURS}/x"),
    Attack("a link to /etc, once the link to a folder is deleted", undoes(f"{OURS}/x"),
           f"mkdir {BACK}/x; ln -s {BACK}/x .", racer=f"until deleted {OURS}/x link /etc {OURS}/x"),
    Attack("the folder above what is to be copied, once the note is there", undoes(f"{OURS}/docs"),
           f"mkdir -p {BACK}/d/Documents; ln -s /home/v {BACK}/trap; ln -s {BACK}/d/Documents docs",
           racer=f"{NOTE} exchange {BACK}/d {BACK}/trap"),
    Attack("the folder that is being copied", undoes(f"{OURS}/docs"),
           MANY + f"mv docs {BACK}; ln -s /home/v/Documents {BACK}/trap; ln -s {BACK}/docs .",
           racer=f"until closed {BACK}/docs/150 exchange {BACK}/docs {BACK}/trap"),
    Attack("the folder that is being moved between file systems",
           makes(f"{BACK}/docs", f"{OURS}/docs"), MANY + "ln -s /home/v/Documents trap",
           disks=("data_bak/u=1m",),
           racer=f"until closed {OURS}/docs/150 exchange {OURS}/docs.bak_0 {OURS}/trap"),
    Attack("a folder in what is being deleted", makes(f"{BACK}/docs", f"{OURS}/x"),
           MANY + f"mkdir docs/d; mv docs {BACK}; ln -s /srv {BACK}/trap; echo u >x",
           racer=f"exchange {BACK}/docs/d {BACK}/trap again"),
    Attack("the folder of an unfinished copy, once that is compared", **SHORT_UNDOING,
           racer=f"until closed {BACK}/docs/big {TURN}"),
    Attack("the folder of an unfinished move, once that is compared", **SHORT_ADOPTION,
           racer=f"until closed {OURS}/docs.bak_0/big {BACK_TURN}"),
    Attack("FIFOs for files that are being copied", undoes(f"{OURS}/docs"),
           MANY + FIFOS + f"mv docs {BACK}; ln -s {BACK}/docs .",
           racer=f"exchange {BACK}/docs {OURS}/fifos again", promised=False),
    Attack("FIFOs for files that are being moved between file systems",
           makes(f"{BACK}/docs", f"{OURS}/docs"), MANY + FIFOS, disks=("data_bak/u=1m",),
           racer=f"exchange {OURS}/docs.bak_0 {OURS}/fifos again", promised=False),
    Attack("a FIFO for a file to compare with a copy", **SHORT_UNDOING,
           racer=f"exchange {BACK}/docs/big {BACK}/fifo again"),
    # After comparing, mv copies the file anew.
    Attack("a FIFO for a file to compare with a moved one", **SHORT_ADOPTION,
           racer=f"exchange {OURS}/docs.bak_0/big {OURS}/fifo again", promised=False),
    Attack("the content of a link, when its definition ends with a slash",
           f"lnk,dir,{BACK}/docs/,{OURS}/docs,symbolic|deleted\n",
           f"mkdir {BACK}/docs; ln -s /home/v/Documents {BACK}/trap",
           f"ln -s {BACK}/docs/ {OURS}/docs", f"{NOTE} exchange {BACK}/docs {BACK}/trap"),
    Attack("a link of root's to be undone, all the time", undoes(f"{OURS}/x"),
           f"mkdir {BACK}/x; ln -s /home/v/Documents trap", f"ln -s {BACK}/x {OURS}/x",
           f"exchange {OURS}/x {OURS}/trap again"),
    Attack("the folder above what is copied to a place beside letters", undoes("/tmp/docs"),
           f"mkdir -p {BACK}/d/docs; ln -s /tmp/v {BACK}/trap",
           f"ln -s {BACK}/d/docs /tmp/docs; mkdir -m 700 /tmp/v; cp -r /home/v/Documents /tmp/v/docs;"
           "chown -R 1002 /tmp/v", f"{NOTE} exchange {BACK}/d {BACK}/trap"),
    Attack("a folder in a copy from one place of root's to another", undoes("/srv/open/docs"),
           MANY + f"mv docs {BACK}; ln -s /home/v/Documents {BACK}/trap",
           f"mkdir /srv/open; ln -s {BACK} /srv/open/docs",
           f"until closed {BACK}/docs/150 exchange {BACK}/docs {BACK}/trap"),
    Attack("the copy of a folder, before that gets its mode", undoes(f"{OURS}/x"),
           MANY + f"mkdir {BACK}/x; mv docs {BACK}/x/v; chmod 577 {BACK}/x/v; ln -s /home ~/trap",
           f"ln -s {BACK}/x {OURS}/x",
           f"until closed {BACK}/x/v/150 exchange {OURS}/x {OURS}/trap"),
    Attack("the copy of a folder, before that gets its owner", makes(f"{BACK}/x", f"{OURS}/x"),
           MANY + f"mkdir x; mv docs x/profile.d; ln -s /etc {BACK}/trap", disks=("data_bak/u=1m",),
           racer=f"until closed {OURS}/x/profile.d/150 exchange {BACK}/x {BACK}/trap"),
    Attack("the same after an exchange that makes mv copy", makes(f"{BACK}/x", f"{OURS}/x"),
           MANY + f"mkdir x y; mv docs y/profile.d; ln -s /etc {BACK}/trap",
           racer=f"until moved_to {OURS}/x.bak_0 within 4000 exchange {OURS}/x.bak_0 {OURS}/y "
                 f"until closed {OURS}/y/profile.d/150 exchange {BACK}/x {BACK}/trap"),
]
