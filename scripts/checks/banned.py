"""The plug-in reaches files, sockets, threads, processes and the clock through the host alone."""

import re

from checks.tree import Finding, line_of

FILES = "use FFileHelper, IFileManager or FPaths"
THREADS = "use AsyncTask, Async, FTSTicker or the host's locks and events"
CLOCK = "use FPlatformTime::Seconds, FDateTime or FTSTicker: a test must be able to move the clock"
PROCESSES = "use FPlatformProcess"
NETWORK = "use FHttpModule"
ENVIRONMENT = "use FPlatformMisc::GetEnvironmentVariable"
TEXT = "use FString, and UE_LOG for output"

# (what stands in the code, what to use instead). Matched against code without comments and literals.
CALLS = [
    (r"std::(?:filesystem|[io]?fstream|ofstream|ifstream|remove|rename)\b", FILES),
    (r"\b(?:fopen|freopen|fdopen|opendir|mkstemp|tmpfile)\s*\(", FILES),
    (r"(?<![\w>])::(?:open|openat|creat|read|write|unlink|rename|mkdir|rmdir|stat|lstat)\s*\(", FILES),
    (r"std::(?:jthread|thread|async|future|promise|packaged_task|this_thread)\b", THREADS),
    (r"std::(?:recursive_|shared_|timed_)*mutex\b|std::(?:condition_variable\w*|\w*semaphore|latch|barrier)\b", THREADS),
    (r"std::(?:lock_guard|unique_lock|scoped_lock|shared_lock|call_once)\b|\bpthread_\w+", THREADS),
    (r"std::chrono\b|\b(?:clock_gettime|gettimeofday|nanosleep|usleep|sleep_for|sleep_until)\b", CLOCK),
    (r"(?<![\w.>:])(?:std::|::)?(?:time|clock|sleep|localtime|gmtime|alarm)\s*\(", CLOCK),
    (r"(?<![\w.>:])(?:std::|::)?(?:system|popen|fork|vfork|execv\w*|execl\w*|posix_spawn\w*|waitpid)\s*\(", PROCESSES),
    (r"(?<![\w.>:])::(?:pipe2?|kill)\s*\(", PROCESSES),
    (r"(?<![\w.>:])(?:::)?(?:socket|getaddrinfo|gethostbyname)\s*\(|\bcurl_\w+\s*\(", NETWORK),
    (r"(?<![\w.>:])(?:std::|::)?(?:getenv|setenv|putenv|secure_getenv)\s*\(", ENVIRONMENT),
    (r"std::(?:cout|cerr|clog|string|wstring|u16string|stringstream|ostringstream|regex)\b", TEXT),
    (r"(?<![\w.>:])(?:std::|::)?(?:printf|fprintf|puts|sprintf|snprintf)\s*\(", TEXT),
]

HEADERS = [
    (r"filesystem|fstream|dirent\.h|fcntl\.h|sys/stat\.h|unistd\.h|cstdio|stdio\.h", FILES),
    (r"thread|mutex|shared_mutex|condition_variable|future|semaphore|latch|barrier|pthread\.h", THREADS),
    (r"chrono|ctime|time\.h|sys/time\.h", CLOCK),
    (r"sys/socket\.h|netdb\.h|netinet/.*|arpa/.*|poll\.h|curl/.*", NETWORK),
    (r"sys/wait\.h|spawn\.h|signal\.h|csignal", PROCESSES),
    (r"iostream|sstream|ostream|regex|string", TEXT),
]


def check(tree, context):
    del context
    findings = []
    for path in tree.files:
        if path.startswith("Source/"):
            findings += check_calls(path, tree.code(path)) + check_headers(path, tree.includes(path))
    return findings


def check_calls(path, code):
    findings = []
    for pattern, instead in CALLS:
        for match in re.finditer(pattern, code):
            name = match.group(0).strip().rstrip("(").rstrip()
            findings.append(Finding(path, line_of(code, match.start()), f"'{name}' is not for the plug-in: {instead}"))
    return findings


def check_headers(path, includes):
    findings = []
    for include in includes:
        for pattern, instead in HEADERS:
            if include.target is None and re.fullmatch(pattern, include.name):
                findings.append(Finding(path, include.line, f"<{include.name}> is not for the plug-in: {instead}"))
    return findings
