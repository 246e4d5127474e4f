# corvexa_reflect(<target> MODULE <name> HEADERS <reflected headers>...)
#
# Runs the header tool over the headers and gives the target the generated code: one X.generated.h a header and one
# <module>.gen.cpp a module, under <build>/Reflection/<module>. The tool rewrites a file only when its text changes.

set(CORVEXA_HEADER_TOOL_DIR "${CMAKE_SOURCE_DIR}/Host/HeaderTool")
find_package(Python3 REQUIRED COMPONENTS Interpreter)
file(GLOB_RECURSE CORVEXA_HEADER_TOOL_SOURCES CONFIGURE_DEPENDS "${CORVEXA_HEADER_TOOL_DIR}/*.py")

function(corvexa_reflect target)
	cmake_parse_arguments(ARG "" "MODULE" "HEADERS" ${ARGN})
	set(out "${CMAKE_BINARY_DIR}/Reflection/${ARG_MODULE}")
	set(source "${out}/${ARG_MODULE}.gen.cpp")
	set(generated "${source}")
	foreach(header IN LISTS ARG_HEADERS)
		get_filename_component(name "${header}" NAME_WE)
		list(APPEND generated "${out}/${name}.generated.h")
	endforeach()
	add_custom_command(
		OUTPUT "${out}/${ARG_MODULE}.stamp"
		BYPRODUCTS ${generated}
		COMMAND ${Python3_EXECUTABLE} -B "${CORVEXA_HEADER_TOOL_DIR}/HeaderTool.py"
			--module ${ARG_MODULE} --out "${out}" ${ARG_HEADERS}
		COMMAND ${CMAKE_COMMAND} -E touch "${out}/${ARG_MODULE}.stamp"
		DEPENDS ${ARG_HEADERS} ${CORVEXA_HEADER_TOOL_SOURCES}
		COMMENT "Reflecting ${ARG_MODULE}"
		VERBATIM)
	add_custom_target(${target}_reflection DEPENDS "${out}/${ARG_MODULE}.stamp")
	target_sources(${target} PRIVATE "${source}")
	set_source_files_properties("${source}" PROPERTIES GENERATED TRUE)
	target_include_directories(${target} PUBLIC "${out}")
	add_dependencies(${target} ${target}_reflection)
	get_target_property(type ${target} TYPE)
	if(type STREQUAL "STATIC_LIBRARY")
		# Types that scripts find by name alone are linked too, with all that their functions need.
		target_link_options(${target} INTERFACE "LINKER:--undefined=CorvexaReflection_${ARG_MODULE}")
	endif()
endfunction()
