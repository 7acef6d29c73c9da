# SPDX-License-Identifier: MIT
# Adds the peers that are installed to the benchmarks. A peer is one source, whose function Suite.cpp calls
# if the macro of the peer is defined. Peers that are not installed are left out by name.

# add_peer(<name> MACRO <macro> SOURCE <file> LIBRARIES <targets>...
#          [GENERATED <files>... FROM <schema> BY <command> <argument>...])
# The command runs in the folder where the files are to appear.
function(add_peer name)
    cmake_parse_arguments(arg "" "MACRO;SOURCE;FROM" "LIBRARIES;GENERATED;BY" ${ARGN})
    target_compile_definitions(benchmarks PRIVATE ${arg_MACRO})
    target_sources(benchmarks PRIVATE peers/${arg_SOURCE} peers/Peer.h)
    target_link_libraries(benchmarks PRIVATE ${arg_LIBRARIES})
    if(arg_GENERATED)
        set(folder ${CMAKE_CURRENT_BINARY_DIR}/peers)
        file(MAKE_DIRECTORY ${folder})
        list(TRANSFORM arg_GENERATED PREPEND ${folder}/)
        add_custom_command(OUTPUT ${arg_GENERATED} COMMAND ${arg_BY}
            DEPENDS ${arg_FROM} WORKING_DIRECTORY ${folder} VERBATIM)
        add_library(${name}_generated OBJECT ${arg_GENERATED})
        target_compile_options(${name}_generated PRIVATE -w)
        target_include_directories(${name}_generated SYSTEM PUBLIC ${folder})
        target_link_libraries(${name}_generated PUBLIC ${arg_LIBRARIES})
        # The run-time library of a generator may call the generated code.
        set_target_properties(${name}_generated PROPERTIES
            CXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
        target_link_libraries(benchmarks PRIVATE ${name}_generated)
    endif()
endfunction()

function(leave_out name reason)
    message(STATUS "Benchmarks without ${name}: ${reason}")
endfunction()

find_package(Protobuf QUIET)
if(TARGET protobuf::libprotobuf AND TARGET protobuf::protoc)
    set(schema ${CMAKE_CURRENT_LIST_DIR}/message.proto)
    add_peer(protobuf MACRO HAVE_PROTOBUF SOURCE Protobuf.cpp LIBRARIES protobuf::libprotobuf
        GENERATED message.pb.cc message.pb.h FROM ${schema}
        BY protobuf::protoc --cpp_out=. --proto_path=${CMAKE_CURRENT_LIST_DIR} ${schema})
else()
    leave_out(protobuf "libprotobuf-dev or protobuf-compiler is not installed")
endif()

find_package(pugixml QUIET)
if(pugixml_FOUND)
    add_peer(pugixml MACRO HAVE_PUGIXML SOURCE Pugixml.cpp LIBRARIES pugixml::pugixml)
else()
    leave_out(pugixml "libpugixml-dev is not installed")
endif()

find_program(XSDCXX xsdcxx)
find_package(XercesC QUIET)
if(XSDCXX AND XercesC_FOUND)
    # A union would become a class of texts, but the other contenders have numbers.
    set(schema ${CMAKE_CURRENT_BINARY_DIR}/peers/router.xsd)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/schema/router.xsd)
    file(READ ${PROJECT_SOURCE_DIR}/schema/router.xsd text)
    string(REPLACE [[type="Decimal"]] [[type="xs:double"]] text "${text}")
    file(WRITE ${schema} "${text}")
    add_peer(xsd MACRO HAVE_XSD SOURCE Xsd.cpp LIBRARIES XercesC::XercesC
        GENERATED router.cxx router.hxx FROM ${schema}
        BY ${XSDCXX} cxx-tree --std c++11 --generate-serialization --namespace-map =router_xsd
            --root-element PelLu300RouterInterfaceXml ${schema})
else()
    leave_out("CodeSynthesis XSD" "xsdcxx or libxerces-c-dev is not installed")
endif()

find_program(SOAPCPP2 soapcpp2)
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(GSOAP QUIET IMPORTED_TARGET gsoap++)
endif()
if(SOAPCPP2 AND GSOAP_FOUND)
    set(schema ${CMAKE_CURRENT_LIST_DIR}/router.gsoap)
    add_peer(gsoap MACRO HAVE_GSOAP SOURCE Gsoap.cpp LIBRARIES PkgConfig::GSOAP
        GENERATED router_soapC.cpp router_soapH.h router_soapStub.h FROM ${schema}
        BY ${SOAPCPP2} -0 -C -L -w -x -c++11 -prouter_soap -d. ${schema})
else()
    leave_out(gSOAP "gsoap, libgsoap-dev or pkg-config is not installed")
endif()

if(NOT QT_MAJOR EQUAL 5)
    leave_out(KDSoap "it is built with Qt 5")
else()
    # The package of KDSoap does not find the Qt modules that it links.
    find_package(Qt5 QUIET COMPONENTS Network)
    find_package(KDSoap QUIET)
    if(KDSoap_FOUND AND Qt5Network_FOUND)
        add_peer(kdsoap MACRO HAVE_KDSOAP SOURCE KdSoap.cpp LIBRARIES KDSoap::kdsoap)
    else()
        leave_out(KDSoap "libkdsoap-dev is not installed")
    endif()
endif()
