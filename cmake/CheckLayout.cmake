# Fails when a file of Platform/ under ROOT includes anything of Framework/, or when a file of either folder is called
# like a header of the C or C++ library or the system, in any case: a disk that does not tell case apart would find it
# in the place of that header.
cmake_policy(VERSION 3.25)

set(system_headers
  # C
  assert.h complex.h ctype.h errno.h fenv.h float.h inttypes.h iso646.h limits.h locale.h math.h setjmp.h signal.h
  stdalign.h stdarg.h stdatomic.h stdbool.h stddef.h stdint.h stdio.h stdlib.h stdnoreturn.h string.h tgmath.h
  threads.h time.h uchar.h wchar.h wctype.h
  # C++
  algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts condition_variable
  coroutine deque exception execution expected filesystem flat_map flat_set format forward_list fstream functional
  future generator initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map mdspan
  memory memory_resource mutex new numbers numeric optional ostream print queue random ranges ratio regex
  scoped_allocator semaphore set shared_mutex source_location span spanstream sstream stack stacktrace stdexcept
  stdfloat stop_token streambuf string string_view strstream syncstream system_error text_encoding thread tuple
  type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
  # systems
  aio.h alloca.h conio.h cpio.h direct.h dirent.h dlfcn.h endian.h fcntl.h features.h fmtmsg.h fnmatch.h ftw.h glob.h
  grp.h iconv.h io.h langinfo.h libgen.h malloc.h memory.h monetary.h mqueue.h ndbm.h netdb.h nl_types.h poll.h
  process.h pthread.h pwd.h regex.h sched.h search.h semaphore.h share.h spawn.h strings.h stropts.h syslog.h tar.h
  termios.h trace.h ulimit.h unistd.h utime.h utmpx.h values.h wait.h windows.h wordexp.h)

set(faults "")
file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/Platform/* ${ROOT}/Framework/*)
foreach(file IN LISTS files)
  cmake_path(GET file FILENAME name)
  string(TOLOWER ${name} name)
  if(name IN_LIST system_headers)
    list(APPEND faults "${file}: named like a system header")
  endif()
  if(file MATCHES "^Platform/")
    file(STRINGS ${ROOT}/${file} includes REGEX "^[ \t]*#.*[<\"][^>\"]*Framework[/\\]")
    foreach(include IN LISTS includes)
      list(APPEND faults "${file}: ${include}")
    endforeach()
  endif()
endforeach()

list(LENGTH files count)
if(count EQUAL 0)
  message(FATAL_ERROR "no file of Platform/ or Framework/ under ${ROOT}")
elseif(faults)
  list(JOIN faults "\n  " faults)
  message(FATAL_ERROR "layout:\n  ${faults}")
endif()
