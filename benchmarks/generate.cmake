# SPDX-License-Identifier: BSD-3-Clause
# Generates the synthetic plug-in sets at configure time.
#
# A set of N plug-ins is named bench.p0000 ... and laid out in groups of ten.
# In even groups each plug-in needs the one before it, in odd groups the one
# after it (so that plug-ins wait and resolve in a cascade when their last
# dependency is installed); the end of each chain, its hub, also needs the hubs
# of the three groups before it (fan-in). Group roots keep an empty dependency
# line, which a plug-in needs to resolve at all. Every version resolves.
#
# Every plug-in opens two extension points; its extension.xml declares them and
# contributes three items to points of other plug-ins. Every even plug-in
# registers one service. The peer gets the same plug-ins with the same ids,
# versions and dependencies as JSON metadata.
include_guard(GLOBAL)

# Writes a file only when its content changes, so that a second configure
# leaves time stamps (and with them the build and the digests) alone.
function(es_bench_write path content)
    if(EXISTS ${path})
        file(READ ${path} old)
        if(old STREQUAL content)
            return()
        endif()
    endif()
    file(WRITE ${path} "${content}")
endfunction()

function(es_bench_name index out)
    set(number "000${index}")
    string(LENGTH "${number}" length)
    math(EXPR start "${length} - 4")
    string(SUBSTRING "${number}" ${start} 4 number)
    set(${out} "bench.p${number}" PARENT_SCOPE)
endfunction()

# The dependencies of plug-in <index> in a set of <count>, as a list of indexes.
function(es_bench_dependencies index count out)
    math(EXPR group "${index} / 10")
    math(EXPR position "${index} % 10")
    math(EXPR odd "${group} % 2")
    set(result)
    if(odd)
        math(EXPR next "${index} + 1")
        if(position LESS 9 AND next LESS count)
            list(APPEND result ${next})
        endif()
        set(hub_position 0)
    else()
        if(position GREATER 0)
            math(EXPR previous "${index} - 1")
            list(APPEND result ${previous})
        endif()
        set(hub_position 9)
    endif()
    if(position EQUAL hub_position)
        foreach(back 1 2 3)
            math(EXPR other "${group} - ${back}")
            if(other GREATER_EQUAL 0)
                math(EXPR other_odd "${other} % 2")
                if(other_odd)
                    math(EXPR hub "${other} * 10")
                else()
                    math(EXPR hub "${other} * 10 + 9")
                endif()
                list(APPEND result ${hub})
            endif()
        endforeach()
    endif()
    set(${out} ${result} PARENT_SCOPE)
endfunction()

# CBOR text string, as hex bytes.
function(es_bench_cbor_text text out)
    string(LENGTH "${text}" length)
    if(length LESS 24)
        math(EXPR head "96 + ${length}" OUTPUT_FORMAT HEXADECIMAL)
        string(SUBSTRING "${head}" 2 -1 head)
    else()
        math(EXPR size "${length}" OUTPUT_FORMAT HEXADECIMAL)
        string(SUBSTRING "${size}" 2 -1 size)
        string(LENGTH "${size}" size_length)
        if(size_length LESS 2)
            set(size "0${size}")
        endif()
        set(head "78${size}")
    endif()
    string(HEX "${text}" body)
    set(${out} "${head}${body}" PARENT_SCOPE)
endfunction()

function(es_bench_cbor_small major count out)
    math(EXPR value "${major} + ${count}" OUTPUT_FORMAT HEXADECIMAL)
    string(SUBSTRING "${value}" 2 -1 value)
    set(${out} "${value}" PARENT_SCOPE)
endfunction()

# The Qt plug-in metadata block that moc would write for a KPluginFactory with
# this JSON: "QTMETADATA !", the format header, then a CBOR map of IID,
# class name and the JSON. Keys of a JSON object come sorted, as moc sorts them.
function(es_bench_peer_metadata name version dependencies service out)
    es_bench_cbor_text("org.kde.KPluginFactory" iid)
    es_bench_cbor_text("BenchPeerFactory" class_name)
    list(LENGTH dependencies dependency_count)
    es_bench_cbor_small(128 ${dependency_count} array)
    foreach(dependency IN LISTS dependencies)
        es_bench_cbor_text("${dependency}" text)
        string(APPEND array "${text}")
    endforeach()
    es_bench_cbor_text("KPlugin" key_kplugin)
    es_bench_cbor_text("Dependencies" key_dependencies)
    es_bench_cbor_text("Id" key_id)
    es_bench_cbor_text("Name" key_name)
    es_bench_cbor_text("Version" key_version)
    es_bench_cbor_text("X-Bench-Service" key_service)
    es_bench_cbor_text("${name}" value_name)
    es_bench_cbor_text("${version}" value_version)
    if(service)
        set(value_service "f5")
    else()
        set(value_service "f4")
    endif()
    set(json "a2${key_kplugin}a4${key_dependencies}${array}${key_id}${value_name}${key_name}${value_name}")
    string(APPEND json "${key_version}${value_version}${key_service}${value_service}")
    # "QTMETADATA !", metadata version 0, Qt major and minor, no architecture requirements.
    string(HEX "QTMETADATA !" magic)
    math(EXPR qt_major "${${ES_QT}Core_VERSION_MAJOR}" OUTPUT_FORMAT HEXADECIMAL)
    math(EXPR qt_minor "${${ES_QT}Core_VERSION_MINOR}" OUTPUT_FORMAT HEXADECIMAL)
    set(bytes "${magic}00")
    foreach(number ${qt_major} ${qt_minor})
        string(SUBSTRING "${number}" 2 -1 number)
        string(LENGTH "${number}" number_length)
        if(number_length LESS 2)
            set(number "0${number}")
        endif()
        string(APPEND bytes "${number}")
    endforeach()
    string(APPEND bytes "00bf02${iid}03${class_name}04${json}ff")
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    set(${out} "${bytes}" PARENT_SCOPE)
endfunction()

# Generates the set of <count> below <dir> and returns in <out_names> the list
# of plug-in names; also writes <dir>/manifest.txt for the harness.
function(es_bench_generate_set count dir out_names)
    set(names)
    math(EXPR last "${count} - 1")
    foreach(index RANGE ${last})
        es_bench_name(${index} name)
        list(APPEND names ${name})
    endforeach()

    set(items 0)
    set(services 0)
    math(EXPR half "${count} / 2")
    foreach(index RANGE ${last})
        list(GET names ${index} name)
        es_bench_dependencies(${index} ${count} dependency_indexes)
        set(dependency_entries)
        set(dependency_names)
        foreach(dependency IN LISTS dependency_indexes)
            list(GET names ${dependency} dependency_name)
            list(APPEND dependency_entries "${dependency_name},1.0.0")
            list(APPEND dependency_names ${dependency_name})
        endforeach()
        list(JOIN dependency_entries "; " dependency_line)
        math(EXPR minor "${index} % 9")
        math(EXPR patch "${index} % 4")
        set(version "1.${minor}.${patch}")
        math(EXPR service "(${index} + 1) % 2")
        if(service)
            math(EXPR services "${services} + 1")
            set(service_line "bench.service: yes\n")
        else()
            set(service_line "")
        endif()

        es_bench_write(${dir}/meta/${name}.inf
"symbolic: ${name}
version: ${version}
compatVersion: 1.0.0
category: benchmark
describe: synthetic plug-in ${index} of ${count}
dependency: ${dependency_line}
bench.points: ${name}.a;${name}.b
${service_line}")

        # Three items for points of other plug-ins; the ids are unique in the set.
        set(data "")
        foreach(step 1 3 5)
            math(EXPR target "(${index} + ${step} * (${index} % 7 + 1)) % ${count}")
            if(target EQUAL index)
                math(EXPR target "(${index} + 1) % ${count}")
            endif()
            list(GET names ${target} target_name)
            if(step EQUAL 3)
                set(point "${target_name}.b")
            else()
                set(point "${target_name}.a")
            endif()
            string(APPEND data
"        <ExtData id=\"${point}\" plugin=\"${name}\" extPlugin=\"${target_name}\">
            <Item id=\"${name}.item${step}\" title=\"Item ${step} of ${name}\"/>
        </ExtData>
")
            math(EXPR items "${items} + 1")
        endforeach()
        es_bench_write(${dir}/ext/${name}/extension.xml
"<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<Plugin id=\"${name}\">
    <ExtPointSet>
        <ExtPoint id=\"${name}.a\" name=\"First point of ${name}\" description=\"synthetic\"/>
        <ExtPoint id=\"${name}.b\" name=\"Second point of ${name}\" description=\"synthetic\"/>
    </ExtPointSet>
    <ExtDataSet>
${data}    </ExtDataSet>
</Plugin>
")

        es_bench_peer_metadata(${name} ${version} "${dependency_names}" ${service} metadata)
        es_bench_write(${dir}/peer/${name}.cpp
"// Generated: the metadata of one peer plug-in; its factory is compiled once.
class QObject;
QObject *benchPeerFactoryInstance();

__attribute__((section(\".qtmetadata\"))) __attribute__((used))
static const unsigned char qt_pluginMetaData[] = {${metadata}};

extern \"C\" __attribute__((visibility(\"default\"))) const char *qt_plugin_query_metadata()
{
    return reinterpret_cast<const char *>(qt_pluginMetaData);
}

extern \"C\" __attribute__((visibility(\"default\"))) QObject *qt_plugin_instance()
{
    return benchPeerFactoryInstance();
}
")
    endforeach()

    es_bench_write(${dir}/manifest.txt "plugins ${count}\nservices ${services}\nitems ${items}\n")
    set(${out_names} ${names} PARENT_SCOPE)
endfunction()
