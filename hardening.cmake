# What makes a fault in the code harder to use for an attack. docs/security.md tells what each is for,
# and the command that looks at the result. For what users run: debuggers and sanitizers have other
# checks.
if(NOT CMAKE_BUILD_TYPE MATCHES "Rel")
    return()
endif()
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

if(NOT WIN32)
    # The toolkit's libraries must not have copies of their data in the program, as -fPIE would make.
    add_compile_options(-fPIC)
    string(APPEND CMAKE_EXE_LINKER_FLAGS " -pie")
endif()

# Windows' programs touch every page of a growing stack anyway, and g++ for it ends with an internal
# error when it should do so twice. Its system marks no targets of jumps.
set(compiled -fstack-protector-strong)
if(WIN32)
    add_link_options(-fstack-protector-strong) # brings the library with the protector's functions
else()
    list(APPEND compiled -fstack-clash-protection -fcf-protection)
endif()
foreach(flag ${compiled})
    string(MAKE_C_IDENTIFIER "HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has})
    if(${has})
        add_compile_options(${flag})
    endif()
endforeach()
foreach(flag -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack
        -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
    string(MAKE_C_IDENTIFIER "HAS${flag}" has)
    check_linker_flag(CXX ${flag} ${has})
    if(${has})
        add_link_options(${flag})
    endif()
endforeach()

# Texts of the C library's formats are constants.
add_compile_options(-Wformat -Wformat-security -Werror=format-security)

# Bounds of the standard library's containers and of the C library's buffers. Some systems' compilers
# have a setting of their own for the latter.
add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
add_compile_definitions(_GLIBCXX_ASSERTIONS)
