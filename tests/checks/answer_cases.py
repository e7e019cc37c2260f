"""Files that ask a platform the odd questions, for check_answers.py: INF files, INI files and
registry exports, by name. What Wine is known to read otherwise is in none of them."""

GUID = "{4d36e972-e325-11ce-bfc1-08002be10318}"
SIGNED = '[Version]\nSignature="$Windows NT$"\n'
HEAD = SIGNED + f"Class=Net\nClassGuid={GUID}\n"
MODELS = "[Manufacturer]\n%Maker%=S,T\n"


def utf16(text, order="le"):
    return ("\ufeff" + text).encode("utf-16-" + order, "surrogatepass")



# The models section "S" with these lines, and what else is in the file.
INF_LINES = {
    "none": "",
    "plain": "k = a, b\n%Name%=Install,PCI\\VEN_1DE4",
    "no values": 'k=\nk=,\nk=a,\nk=a,,b\nk=,,\nk = ,a\na=b=c,d\na,b=c\na = =b\na"="b=c',
    "no keys": "alone\na, b\na,\n,a\n,\n=x\n=\n==\n==a,b\n%Name%\n%Name%,a",
    "quotes": '"k" = "a, b;c", " x ", a "q""b" c\n"" = "", ""\nk = "a" "b"\nk=a"b, c"d\nk="a"""\n'
              "k=\"\"\"\"\nk='a, b',c'd\n'e'='f'",
    "open quotes": 'k = "open, end ; c\nl=a"\nm="\n"n=o, p\nq=r,"',
    "comments": ';x\nk=a;b, c\nl;=a\n m = a ; b\n#n=a\n  ; o\np=";";\nq= ;r\n;;\n/s=t\n//u=v',
    "blanks": '  k  =  a b  ,  c  \n\tl\t=\ta\t,\tb\t\n\n  \nm=a b," c "\n\x0cm=\x0ba\x0c,b\x0b\n',
    "names": '%name%=%NAME%,a%other%b,"%with blank%",%quoted%, %commas%',
    "odd names": "k=%none%,100%%,%,%name\nl=%%%name%%%,%name%%name%,% name %,%\"name\"%,%na\n"
                 'm="%name"%,%name;%\n%%=%%',
    "names in names": "k=%self%,%chain%,%empty%,%long%,%continued%\nl=%percent%name%percent%",
    "continuation": "k = a,\\\n  b,\\ ; c\n c\nl=d\nm=a\\\nb\nn=a \\\n b,\\\n\n\no=a,\\\n;x\np=q",
    "backslashes": 'k="a\\"\nl=b\\c\no="a\\\nb"\np=a\\ b\nq=\\,a\nr=a,\\b\\',
    "continued key": 'a\\\nb=c\nd=\\\ne\nf\\\n=g\n"h\\\ni"=j\na=b ; c \\\nd=e\n; f \\\ng=h',
    "many fields": "\n".join("k=" + end.join(map(str, range(3000))) for end in (",", ",\\\n")),
    "long": f"k={'x' * 300},{'y' * 510}\n{'z' * 500}=a\n{'k' * 100}={', '.join(['v' * 200] * 100)}",
    "sections": "a=1\n[T]\nb=2\n[s]\nc=3\n[S ]\nd=4\n[ S]\ne=5\n[S] x\nf=6\n[S];\ng=7\n[S]h=8\ni=9",
    "brackets": 'a=[b]\n b=[c\n"[d]"=e\n[S"]\nf=g\n[S;]\nh=i\n [S]\nj=k\n\t[S]\nl=m',
    "continued header": "a=b,\\\n[T]\nc=d\n[S.T]\ne=f",
    "decoration": "[S.T]\na=b\n[S.]\nc=d\n[]\ne=f",
    "makers": "a=b\n[Manufacturer]\nT\nA=S.T,,x\n=S\nB=\n%Maker%=%Maker%\n[S.T]\nc=d",
    "end in blanks": "k=a,b\n   ",
    "end in key": "k=a,b\nl",
    "end in quote": 'k=a,"b',
    "non-ASCII": "k=\u00e9\u7f51\U0001f4be,\u00ff\n\u00c9=\u00e9\n%\u00e9%=%\u00e9%",
}
INF_STRINGS = (
    '\n[Strings]\nMaker="The, maker"\nname = "Text, with ""quotes"""\nother=%name%\nname=second\n'
    'with blank=y ; c\n"quoted"=z\ncommas=a, b\nself=%self%\nchain=%other%\nempty=\nlong="'
    + "x" * 400 + '"\ncontinued=a\\\n b\npercent=%%\nalone\n\u00e9=accent\n'
)

INF_FILES = {
    "empty": b"",
    "comments": "\n; only\n;a comment",
    "no section": "text\nk=v\n",
    "title": "text\n" + HEAD + MODELS + "[S]\na=b\n[Strings]\na=b",
    "title that goes on": "text \\\nmore \\\n" + HEAD + MODELS + "[S]\na=b\n[Strings]\na=b",
    "no version": "[Strings]\na=b\n",
    "no signature": "[Version]\nClass=Net\n",
    "other signature": '[Version]\nSignature="$Other$"\n',
    "named signature": '[Version]\nSignature="%s%"\n[Strings]\ns=$Chicago$\n',
    "chicago": "[Version]\nSignature=$CHICAGO$\nClass=Net\n",
    "commented signature": '[Version]\nSignature="$Chicago$" ; c\nClass=Net\n',
    "blanks in version": '[VERSION]\n  signature  =  "$windows nt$"  \n  CLASS  =  Net  \n',
    "open bracket": HEAD + "[open\na=b\n",
    "open bracket first": b'[Version\nSignature="$Chicago$"\n',
    **{f"section {size}": HEAD + f"[{'n' * size}]\n" for size in (254, 255, 256, 300)},
    "no class": SIGNED + MODELS + "[S]\na=b",
    "empty class": SIGNED + "Class=\n",
    "only class": SIGNED + "Class=Net\n",
    "unknown guid": SIGNED + "ClassGuid={00112233-4455-6677-8899-aabbccddeeff}\n",
    "quoted class": SIGNED + f'Class="Net"\nClassGuid="{GUID}"\n',
    "short guid": SIGNED + "Class=Net\nClassGuid={4d36e972}\n",
    "bare guid": SIGNED + f"Class=Net\nClassGuid={GUID[1:-1]}\n",
    "upper guid": SIGNED + f"Class=Net\nClassGuid={GUID.upper()}\n",
    "guid and text": SIGNED + f"Class=Net\nClassGuid={GUID}x\n",
    "version later": MODELS + "[S]\na=b\n" + HEAD,
    "far version": "[Other]\n" + ";" * 9000 + "\n" + HEAD,
    **{f"class of {size}": SIGNED + f"Class={'c' * size}\n" for size in (63, 64)},
    "bytes": bytes(range(256)) * 20,
    "windows-1252": (HEAD + MODELS + "[S]\nk=caf\u00e9,b\n").encode("cp1252"),
    "ctrl-z at the end": HEAD + MODELS + "[S]\nk=a,b\n\x1a",
    "ctrl-z in an open quote": HEAD + MODELS + '[S]\nk="a\x1a',
    "lone surrogates": utf16(HEAD + MODELS + "[S]\nk=a\ud800b\ud800,\udc00\n"),
    "half a pair": utf16(HEAD + MODELS + "[S]\nk=a,b\ud800"),
}

INI_FILES = {
    "empty": "",
    "order": "a=0\n[B]\na=1\n[A a] junk\na=2\n;[no]\n[unclosed\na=3\n[]\n[ ]\n[b]\nB=4",
    "values": '[S]\n  a = some text \nB=" 1350 "\nc d=\'x\'\n[T]\na="80"86\nB=1 ; x\nc d=\n'
              "[U]\nA=1\na=2\nB\n;c d=3\n",
    "quotes": "[S]\na=\"\nB=\"\"\nc d='\n[T]\na=''\nB=\"x'\nc d=\"\"x\"\"\n"
              "[U]\na=\"a\" \nB=' a '\nc d= \"x\" ; y",
    "blanks": '[ S ]\n\ta\t=\tv\t\nB = "\tv\t"\n c  d = 1\n[T]\n=empty key\n = blank key\na=b=c\n',
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
    "bytes": bytes(range(256)) * 20,
    "zeros": bytes(100),
    "half a pair": utf16("[S]\na=1\ud800"),
    "half a unit": utf16("[S]\na=1\n") + b"x",
}

REG_HEAD = "Windows Registry Editor Version 5.00\n\n"
ENUM = "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\"
CLASS = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Class"
KEY = "{00000000-7e57-0000-0000-000000000000}"


def device(key, value):
    return f'{ENUM}{key}]\n"DeviceDesc"="{value}"\n'


DRIVEN = device("A\\1", "d") + f'"Driver"="{KEY}\\\\0001"\n[{CLASS}\\{KEY}\\0001]\n'
# A driver's values, which the registry functions read.
REG_VALUES = {
    "texts": '"DriverVersion"="1.2"\n"DriverDesc"=""\n"ProviderName"="a\\"b\\\\c"\n"InfPath"="x"\n'
             '@="default"',
    "numbers": '"DriverVersion"=dword:1\n"DriverDesc"=dword:FFFFFFFF\n'
               '"ProviderName"=dword:0000000a\n"Number"=dword:00',
    "bytes": '"DriverVersion"=hex:\n"DriverDesc"=hex:01\n"ProviderName"=hex:1,2,3\n'
             '"InfPath"=hex:0a,0B,ff',
    "types": '"DriverVersion"=hex(0):01,02\n"DriverDesc"=hex(1):61,00,62,00,00,00\n'
             '"ProviderName"=hex(2):25,00,61,00,25,00,00,00\n"InfPath"=hex(4):01,00,00,00\n'
             '"InfSection"=hex(5):00,00,00,01\n"DriverDate"=hex(b):01,00,00,00,00,00,00,00\n'
             '"Number"=hex(3):01',
    "lists": '"DriverVersion"=hex(7):61,00,00,00,62,00,00,00,00,00\n"DriverDesc"=hex(7):\n'
             '"ProviderName"=hex(7):00,00\n"InfPath"=hex(7):61,00,00,00\n"Number"=hex(4):01,02',
    "continuation": '"DriverVersion"=hex:01,\\\n  02,\\\n\t03\n'
                    '"DriverDesc"=hex(1):61,00,\\\n 62,00,00,\\\n00',
    "comments": '; one\n"DriverVersion"="a" ; two\n"DriverDesc"=";"\n"ProviderName"=dword:1;three\n'
                '"InfPath"=hex:01 ; four',
    "blanks": '  "DriverVersion"  =  "a"  \n\t"DriverDesc"=dword:1\t\n"ProviderName"= hex:01, 02',
    "names": '"DRIVERVERSION"="a"\n"driverdesc"="b"\n"DriverDesc"="c"\n""="no name"\n@="default"',
    "removed": '"DriverVersion"="a"\n"DriverDesc"="b"\n"DriverVersion"=-\n@="c"\n@=-',
    "escapes": '"DriverVersion"="a\\tb"\n"ProviderName"="C:\\\\x\\\\"\n"In\\"fPath"="x"',
    "non-ASCII": '"DriverVersion"="caf\u00e9 \u7f51 \U0001f4be"\n'
                 '"DriverDesc"=hex(1):e9,00,51,7f,3d,d8,be,dc,00,00\n'
                 '"ProviderName"=hex(1):00,d8,61,00,00,00',
    "no end": '"DriverVersion"="a"\n"DriverDesc"="b"',
    "long": "\n".join(f'"{name}"="{"v" * size}"' for name, size in
                      [("DriverVersion", 700), ("DriverDesc", 999), ("ProviderName", 1000)]),
}
# The properties of a device.
REG_DEVICES = {
    "ids": '"HardwareID"=hex(7):61,00,00,00,62,00,00,00,00,00',
    "ids of a text": '"HardwareID"="a"',
    "no ids": '"HardwareID"=hex(7):00,00\n"FriendlyName"=""',
    "indirect": '"DeviceDesc"="@oem4.inf,%a%;Text; with (all) of it"\n"FriendlyName"="@x.inf,%a%"\n'
                '"LocationInformation"="@pci.sys,#65536;PCI bus %1, device %2;(0,31,3)"',
    "expanded": '"DeviceDesc"=hex(2):25,00,61,00,25,00,00,00',
    "unterminated": '"DeviceDesc"=hex(1):61,00\n"FriendlyName"=hex(1):\n'
                    '"LocationInformation"=hex(1):61,00,00,00,62,00,00,00',
}
REG_FILES = {
    "header alone": REG_HEAD,
    "keys": REG_HEAD + device("B\\1", "b1") + device("A\\2", "a2") + device("A\\1", "a1")
            + ENUM.upper() + 'a\\2]\n"FriendlyName"="more"\n' + device("B\\1\\Deeper", "no"),
    "removed": REG_HEAD + device("A\\1", "a") + device("B\\1", "b")
               + f"[-{ENUM[1:]}A]\n\n[-{ENUM[1:]}C\\1]\n",
    "first set": REG_HEAD + device("A\\1", "a").replace("CurrentControlSet", "ControlSet001")
                 + device("B\\1", "b").replace("CurrentControlSet", "ControlSet002"),
    "regedit4": "REGEDIT4\n\n" + DRIVEN + '"DriverVersion"="1"\n"DriverDesc"=hex(2):61,62,00\n'
                '"ProviderName"=hex(7):61,00,62,00,00\n"Number"=dword:5\n',
}

FILES = {
    "inf": INF_FILES
    | {f"lines {n}": HEAD + MODELS + "[S]\n" + text + INF_STRINGS for n, text in INF_LINES.items()}
    | {f"last {n}": HEAD + MODELS + "[S]\n" + text for n, text in INF_LINES.items()},
    "profile": INI_FILES,
    "devices": REG_FILES
    | {f"values {n}": REG_HEAD + DRIVEN + text for n, text in REG_VALUES.items()}
    | {f"device {n}": f"{REG_HEAD}{ENUM}A\\1]\n{text}" for n, text in REG_DEVICES.items()},
}
