"""Files that ask a platform the odd questions, for check_answers.py: INF files, INI files and registry
exports, by name."""

GUID = "{4d36e972-e325-11ce-bfc1-08002be10318}"
SIGNED = '[Version]\nSignature="$Windows NT$"\n'
HEAD = SIGNED + f"Class=Net\nClassGuid={GUID}\n"
MODELS = "[Manufacturer]\n%Maker%=S,T\n"

# The models section "S" with these lines, and what else is in the file.
INF_LINES = {
    "none": "",
    "plain": "k = a, b\n%Name%=Install,PCI\\VEN_1DE4",
    "no values": "k=\nk=,\nk=a,\nk=a,,b\nk=,,\nk = ,a\na=b=c,d\na,b=c\na = =b\na\"=\"b=c",
    "no keys": "alone\na, b\na,\n,a\n,\n=x\n=\n==\n==a,b\n%Name%\n%Name%,a",
    "quotes": '"k" = "a, b;c", " x ", a "q""b" c\n"" = "", ""\nk = "a" "b"\nk=a"b, c"d\nk="a"""\nk=""""'
              "\nk='a, b',c'd\n'e'='f'",
    "empty quotes": 'k="" x, "" "y"',
    "open quotes": 'k = "open, end ; c\nl=a"\nm="\n"n=o, p\nq=r,"',
    "comments": ";x\nk=a;b, c\nl;=a\n m = a ; b\n#n=a\n  ; o\np=\";\";\nq= ;r\n;;\n/s=t\n//u=v",
    "blanks": "  k  =  a b  ,  c  \n\tl\t=\ta\t,\tb\t\n\n   \nm=a   b,\" c \" \n n\nk=\x0ba\x0c,b\x0b\n\x0cm=a",
    "no-break spaces": "l = \u00a0a\u00a0,b",
    "names": "%name%=%NAME%,a%other%b,\"%with blank%\",%quoted%, %commas%",
    "odd names": "k=%none%,100%%,%,%name\nl=%%%name%%%,%name%%name%,% name %,%\"name\"%,%na\nm=\"%name\"%,%name;%\n%%=%%",
    "names in names": "k=%self%,%chain%,%empty%,%long%,%continued%\nl=%percent%name%percent%",
    "continuation": "k = a,\\\n  b,\\ ; comment\n c\nl=d\nm=a\\\nb\nn=a \\\n b,\\\n\n\no=a,\\\n;x\np=q",
    "backslashes": 'k="a\\"\nl=b\\c\no="a\\\nb"\np=a\\ b\nq=\\,a\nr=a,\\b\\',
    "two backslashes": "m=a\\\\\nn=b",
    "continued key": "a\\\nb=c\nd=\\\ne\nf\\\n=g\n\"h\\\ni\"=j\na=b ; c \\\nd=e\n; f \\\ng=h",
    "many fields": "\n".join("k=" + end.join(str(i) for i in range(3000)) for end in (",", ",\\\n")),
    "long": f"k={'x' * 300},{'y' * 510}\n{'z' * 500}=a\n{'k' * 100}=" + ", ".join(["v" * 200] * 100),
    "sections": "a=1\n[T]\nb=2\n[s]\nc=3\n[S ]\nd=4\n[ S]\ne=5\n[S] text\nf=6\n[S];c\ng=7\n[S]h=8\ni=9",
    "brackets": "a=[b]\n b=[c\n\"[d]\"=e\n[S\"]\nf=g\n[S;]\nh=i\n [S]\nj=k\n\t[S]\nl=m",
    "continued header": "a=b,\\\n[T]\nc=d\n[S.T]\ne=f",
    "decoration": "[S.T]\na=b\n[S.]\nc=d\n[]\ne=f",
    "makers": "a=b\n[Manufacturer]\nT\nA=S.T,,x\n=S\nB=\n%Maker%=%Maker%\n[S.T]\nc=d",
    "end in blanks": "k=a,b\n   ",
    "end in key": "k=a,b\nl",
    "end in quote": 'k=a,"b',
    "non-ASCII": "k=\u00e9\u7f51\U0001f4be,\u00ff\n\u00c9=\u00e9\n%\u00e9%=%\u00e9%",
}
INF_STRINGS = (
    '\n[Strings]\nMaker="The, maker"\nname = "Text, with ""quotes"""\nother=%name%\nname=second\nwith blank=y ; c\n'
    '"quoted"=z\ncommas=a, b\nself=%self%\nchain=%other%\nempty=\nlong="' + "x" * 400
    + '"\ncontinued=a\\\n b\npercent=%%\nalone\n\u00e9=accent\n'
)

INF_FILES = {
    "empty": "",
    "comments": "\n; only\n;a comment",
    "no section": "text\nk=v\n",
    "title": "text\n" + HEAD + MODELS + "[S]\na=b\n[Strings]\na=b",
    "title that goes on": "text \\\nmore \\\n" + HEAD + MODELS + "[S]\na=b\n[Strings]\na=b",
    "title without strings": "text\n" + HEAD + MODELS + "[S]\na=b",
    "no version": "[Strings]\na=b\n",
    "no signature": "[Version]\nClass=Net\n",
    "other signature": '[Version]\nSignature="$Other$"\n',
    "named signature": '[Version]\nSignature="%s%"\n[Strings]\ns=$Chicago$\n',
    "chicago": "[Version]\nSignature=$CHICAGO$\nClass=Net\n",
    "commented signature": '[Version]\nSignature="$Chicago$" ; c\nClass=Net\n',
    "blanks in version": "[VERSION]\n  signature  =  \"$windows nt$\"  \n  CLASS  =  Net  \n",
    "open bracket": HEAD + "[open\na=b\n",
    "open bracket first": "[Version\nSignature=\"$Chicago$\"\n",
    **{f"section {size}": HEAD + f"[{'n' * size}]\n" for size in (254, 255, 256, 300)},
    "no class": SIGNED + MODELS + "[S]\na=b",
    "empty class": SIGNED + "Class=\n",
    "only class": SIGNED + "Class=Net\n",
    "only guid": SIGNED + f"ClassGuid={GUID}\n",
    "unknown guid": SIGNED + "ClassGuid={00112233-4455-6677-8899-aabbccddeeff}\n",
    "quoted class": SIGNED + f'Class="Net"\nClassGuid="{GUID}"\n',
    "short guid": SIGNED + "Class=Net\nClassGuid={4d36e972}\n",
    "bare guid": SIGNED + f"Class=Net\nClassGuid={GUID[1:-1]}\n",
    "upper guid": SIGNED + f"Class=Net\nClassGuid={GUID.upper()}\n",
    "named guid": SIGNED + f"Class=Net\nClassGuid=%g%\n[Strings]\ng={GUID}\n",
    "commented guid": SIGNED + f"Class=Net\nClassGuid={GUID} ; c\n",
    "commented class": SIGNED + f"Class=Net ; c\nClassGuid={GUID}\n",
    "guid and text": SIGNED + f"Class=Net\nClassGuid={GUID}x\n",
    "guid in second version": SIGNED + f"Class=Net\n[S]\na=b\n[Version]\nClassGuid={GUID}\n",
    "second version": SIGNED + "[Manufacturer]\n" + HEAD,
    "version later": MODELS + "[S]\na=b\n" + HEAD,
    "far version": "[Other]\n" + ";" * 9000 + "\n" + HEAD,
    **{f"class of {size}": SIGNED + f"Class={'c' * size}\n" for size in (63, 64)},
    "bytes": bytes(range(256)) * 20,
    "zeros": bytes(100),
    "windows-1252": (HEAD + MODELS + "[S]\nk=caf\u00e9,b\n").encode("cp1252"),
    "zero in line": HEAD + MODELS + "[S]\nk=a\0b,c\nl=d\n",
    "ctrl-z at the end": HEAD + MODELS + "[S]\nk=a,b\n\x1a",
    "ctrl-z in an open quote": HEAD + MODELS + '[S]\nk="a\x1a',
    "lone surrogate": b"\xff\xfe" + (HEAD + MODELS + "[S]\nk=a\ud800b\ud800,\udc00\n").encode("utf-16-le", "surrogatepass"),
    "half a pair": b"\xff\xfe" + (HEAD + MODELS + "[S]\nk=a,b\ud800").encode("utf-16-le", "surrogatepass"),
    "half a unit": b"\xff\xfe" + (HEAD + MODELS + "[S]\nk=a,b\n").encode("utf-16-le") + b"x",
    "only a mark": b"\xff\xfe",
    "only the UTF-8 mark": b"\xef\xbb\xbf",
}

INI_FILES = {
    "empty": "",
    "order": "a=0\n[B]\na=1\n[A a] junk\na=2\n;[no]\n[unclosed\na=3\n[]\n[ ]\n[b]\nB=4",
    "values": "[S]\n  a = some text \nB=\" 1350 \"\nc d='x'\n[T]\na=\"80\"86\nB=1 ; x\nc d=\n[U]\nA=1\na=2\nB\n;c d=3\n",
    "quotes": "[S]\na=\"\nB=\"\"\nc d='\n[T]\na=''\nB=\"x'\nc d=\"\"x\"\"\n[U]\na=\"a\" \nB=' a '\nc d= \"x\" ; y",
    "blanks": "[ S ]\n\ta\t=\tv\t\nB = \"\tv\t\"\n c  d = 1\n[T]\n=empty key\n = blank key\na=b=c\n",
    "odd blanks": "[S]\n\x0bc d=2\na=\x0c1\n",
    "duplicates": "[S]\na=1\n[T]\na=2\n[s]\nB=3\n[S]\na=4\n[t]\nc d=5",
    "case": "[sEcTiOn]\nA=1\nb=2\nC D=3\nvendorid=0x1DE4",
    "brackets": "[a]b]\na=1\n[[c]]\na=2\n[d;e]\na=3\n",
    "comments": "[S] ; c\n;a=1\n#a=2\n ; B=3\nB=4;5\n[T];\n;;\nVendorID=1350 ; x\n[;U]\na=;\n",
    "long": f"[{'n' * 300}]\na={'v' * 300}\nB={'v' * 254}\n[S]\na={'v' * 255}\n",
    "many": "".join(f"[section {i:05}]\na={i}\n" for i in range(2500)),
    "lone CR": "[S]\ra=1\rB=2\r\r[T]\rc d=3",
    "mixed ends": "[S]\r\na=1\nB=2\r\n\r\nc d=3\n\r[T]\na=4\\\nB=%b%\n[U]\na=%%",
    "non-ASCII": "[\u00e9]\na=\u7f51\n[S]\na=\U0001f4be\u00e9\nB=\u00e9\u00e9\u00e9\u00e9",
    "zero": "[S]\na=1\0 2\nB=3\n",
    "ctrl-z": "[S]\na=1\n\x1aB=2\n[T]\na=3",
    "bytes": bytes(range(256)) * 20,
    "zeros": bytes(100),
    "windows-1252": "[S]\na=caf\u00e9\n".encode("cp1252"),
    "half a pair": b"\xff\xfe" + "[S]\na=1\ud800".encode("utf-16-le", "surrogatepass"),
    "half a unit": b"\xff\xfe" + "[S]\na=1\n".encode("utf-16-le") + b"x",
}

REG_HEAD = "Windows Registry Editor Version 5.00\n\n"
ENUM = "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\"
CLASS = "\n[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Class\\{00000000-7e57-0000-0000-000000000000}\\0001]\n"
DRIVEN = ENUM + 'A\\1]\n"DeviceDesc"="d"\n"Driver"="{00000000-7e57-0000-0000-000000000000}\\\\0001"\n' + CLASS
# A driver's values, which the registry functions read.
REG_VALUES = {
    "texts": '"DriverVersion"="1.2"\n"DriverDesc"=""\n"ProviderName"="a\\"b\\\\c"\n"InfPath"="x"\n@="default"',
    "numbers": '"DriverVersion"=dword:1\n"DriverDesc"=dword:FFFFFFFF\n"ProviderName"=dword:0000000a\n"Number"=dword:00',
    "bytes": '"DriverVersion"=hex:\n"DriverDesc"=hex:01\n"ProviderName"=hex:1,2,3\n"InfPath"=hex:0a,0B,ff',
    "types": '"DriverVersion"=hex(0):01,02\n"DriverDesc"=hex(1):61,00,62,00,00,00\n"ProviderName"=hex(2):25,00,61,00,25,00,00,00\n'
             '"InfPath"=hex(4):01,00,00,00\n"InfSection"=hex(5):00,00,00,01\n"DriverDate"=hex(b):01,00,00,00,00,00,00,00\n"Number"=hex(3):01',
    "lists": '"DriverVersion"=hex(7):61,00,00,00,62,00,00,00,00,00\n"DriverDesc"=hex(7):\n"ProviderName"=hex(7):00,00\n'
             '"InfPath"=hex(7):61,00,00,00\n"InfSection"=hex(7):61,00',
    "unterminated": '"DriverVersion"=hex(1):61,00\n"DriverDesc"=hex(2):61,00,62,00\n"ProviderName"=hex(1):\n"InfPath"=hex(1):61,00,00,00,62,00,00,00',
    "odd length": '"DriverVersion"=hex(1):61,00,62\n"DriverDesc"=hex(4):01,02',
    "continuation": '"DriverVersion"=hex:01,\\\n  02,\\\n\t03\n"DriverDesc"=hex(1):61,00,\\\n 62,00,00,\\\n00',
    "comments": '; one\n"DriverVersion"="a" ; two\n"DriverDesc"=";"\n"ProviderName"=dword:1;three\n"InfPath"=hex:01 ; four',
    "blanks": '  "DriverVersion"  =  "a"  \n\t"DriverDesc"=dword:1\t\n"ProviderName"= hex:01, 02',
    "names": '"DRIVERVERSION"="a"\n"driverdesc"="b"\n"DriverDesc"="c"\n""="empty name"\n@="default"',
    "removed": '"DriverVersion"="a"\n"DriverDesc"="b"\n"DriverVersion"=-\n@="c"\n@=-',
    "escapes": '"DriverVersion"="a\\tb"\n"ProviderName"="C:\\\\x\\\\"\n"In\\"fPath"="x"',
    "odd escapes": '"DriverVersion"="a"\n"DriverDesc"="\\0"\n"InfPath"="\\n"',
    "non-ASCII": '"DriverVersion"="caf\u00e9 \u7f51 \U0001f4be"\n"DriverDesc"=hex(1):e9,00,51,7f,3d,d8,be,dc,00,00\n"ProviderName"=hex(1):00,d8,61,00,00,00',
    "no end": '"DriverVersion"="a"\n"DriverDesc"="b"',
    "long": f'"DriverVersion"="{"v" * 700}"\n"DriverDesc"="{"v" * 999}"\n"ProviderName"="{"v" * 1000}"',
    "bad values": '"DriverVersion"=word:1\n"DriverDesc"="ok"',
}
# The properties of a device.
REG_DEVICES = {
    "ids": '"HardwareID"=hex(7):61,00,00,00,62,00,00,00,00,00',
    "ids of a text": '"HardwareID"="a"',
    "unterminated ids": '"HardwareID"=hex(7):61,00,00,00,62,00',
    "ids and more": '"HardwareID"=hex(7):61,00,00,00,00,00,62,00,00,00,00,00',
    "no ids": '"HardwareID"=hex(7):00,00\n"FriendlyName"=""',
    "numbers": '"HardwareID"=dword:1\n"FriendlyName"=dword:2\n"DeviceDesc"=hex:61,62',
    "indirect": '"DeviceDesc"="@oem4.inf,%a%;Text; with (all) of it"\n"FriendlyName"="@x.inf,%a%"\n'
                '"LocationInformation"="@pci.sys,#65536;PCI bus %1, device %2, function %3;(0,31,3)"',
    "expanded": '"DeviceDesc"=hex(2):25,00,61,00,25,00,00,00',
    "unterminated": '"DeviceDesc"=hex(1):61,00\n"FriendlyName"=hex(1):\n"LocationInformation"=hex(1):61,00,00,00,62,00,00,00',
}
REG_FILES = {
    "header alone": REG_HEAD,
    "keys": REG_HEAD + ENUM + 'B\\1]\n"DeviceDesc"="b1"\n' + ENUM + 'A\\2]\n"DeviceDesc"="a2"\n' + ENUM + 'A\\1]\n"DeviceDesc"="a1"\n'
            + ENUM.upper() + 'a\\2]\n"FriendlyName"="more"\n' + ENUM + 'B\\1\\Deeper]\n"DeviceDesc"="no"\n',
    "removed": REG_HEAD + ENUM + 'A\\1]\n"DeviceDesc"="a"\n' + ENUM + 'B\\1]\n"DeviceDesc"="b"\n'
               + ENUM.replace("[", "[-") + "A]\n\n" + ENUM.replace("[", "[-") + "C\\1]\n",
    "first set": REG_HEAD + ENUM.replace("CurrentControlSet", "ControlSet001") + 'A\\1]\n"DeviceDesc"="a"\n'
                 + ENUM.replace("CurrentControlSet", "ControlSet002") + 'B\\1]\n"DeviceDesc"="b"\n',
    "regedit4": "REGEDIT4\n\n" + DRIVEN + '"DriverVersion"="1"\n"DriverDesc"=hex(2):61,62,00\n"ProviderName"=hex(7):61,00,62,00,00\n"Number"=dword:5\n',
}

FILES = {
    "inf": INF_FILES
    | {f"lines {name}": HEAD + MODELS + "[S]\n" + text + INF_STRINGS for name, text in INF_LINES.items()}
    | {f"last {name}": HEAD + MODELS + "[S]\n" + text for name, text in INF_LINES.items()},
    "profile": INI_FILES,
    "devices": REG_FILES
    | {f"values {name}": REG_HEAD + DRIVEN + text for name, text in REG_VALUES.items()}
    | {f"device {name}": REG_HEAD + ENUM + "A\\1]\n" + text for name, text in REG_DEVICES.items()},
}

# Where the two differ, and why: Wine departs from what is published, or nothing is published and the
# stand-in keeps its own way. By the name of the case (every encoding of it) or of the file.
REASONS = {
    "inf": {
        "Wine leaves the name of the class alone; published: the name of that GUID's class": ["only guid"],
        "Wine takes a title for a section's fault unless there are strings; drivers have titles": ["title without strings"],
        "Wine takes UTF-16 of an odd length for narrow text": ["half a unit"],
        "an empty file but for its mark, of which nothing is published":
            ["only a mark", "only the UTF-8 mark", "empty.utf8", "empty.utf16"],
        "both refuse the file, Wine for what its bytes are as narrow text": ["open bracket first.utf16be"],
        "Wine takes a zero for a blank": ["zeros", "zero in line"],
        "Wine takes a no-break space for a blank; published: blanks and tabs": ["lines no-break spaces", "last no-break spaces"],
        "Wine keeps a blank behind two quotes; nothing is published of it": ["lines empty quotes", "last empty quotes"],
        "Wine drops both; the stand-in lets one continue the line": ["lines two backslashes", "last two backslashes"],
    },
    "profile": {
        "Wine takes a vertical tab and Ctrl-Z for blanks": ["odd blanks", "ctrl-z"],
        "Wine cuts a value that is no UTF-8 in the middle of a character": ["windows-1252"],
        "Wine cuts the last character of a quoted value that just fits": ["odd_devices.ini"],
    },
    "devices": {
        "reg.exe of Wine reads no line end in a text; exports have them": ["import_rules.reg"],
        "reg.exe of Wine ends every text by a zero; an import stores the bytes as they are":
            ["values unterminated", "values odd length", "values lists", "device unterminated ids"],
        "reg.exe of Wine takes these for control characters; exports have none": ["values odd escapes"],
        "the stand-in refuses an export with a fault and says where": ["values bad values"],
        "Wine gives also what is behind the end of a list": ["device ids and more"],
        "Wine gives a property that is no text as it is stored": ["device numbers"],
    },
}
DEPARTURES = {kind: {name for names in reasons.values() for name in names} for kind, reasons in REASONS.items()}
