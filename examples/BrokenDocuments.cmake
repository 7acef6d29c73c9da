# SPDX-License-Identifier: MIT
# Writes documents into FOLDER that cannot be read or do not pass their check, and a good one, and runs
# PROGRAM on them. It must exit with 1, tell on each document's line what is wrong, and still process the good
# one.
cmake_minimum_required(VERSION 3.21)

file(REMOVE_RECURSE ${FOLDER})

function(write_document name content)
    file(WRITE ${FOLDER}/${name} "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n${content}\n")
endfunction()
function(write_message name content)
    write_document(${name} "<PelLu300RouterInterfaceXml>
  <PelLu300RouterMessage>
    ${content}
  </PelLu300RouterMessage>
</PelLu300RouterInterfaceXml>")
endfunction()

string(ASCII 27 escape)
write_message(empty-boolean.xml
    "<Type>Reply</Type><Fragment><AcquireMastership><Success/></AcquireMastership></Fragment>")
write_message(empty-fragment.xml "<Type>Event</Type><Fragment/>")
write_message(good.xml "<Type>Event</Type>")
write_message(no-type.xml "<MessageID>1</MessageID>")
write_message("steers-the-terminal-${escape}[2J.xml" "<Type>Shout</Type>")
write_message(unclosed-fragment.xml "<Type>Event</Type><Fragment>")
write_message(unclosed-type.xml "<Type>Event")
write_document(wrong-root.xml "<RouterStatus/>")
file(WRITE ${FOLDER}/zero-bytes.xml "")

execute_process(COMMAND ${PROGRAM} ${FOLDER} ${FOLDER}/missing.xml
                OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)

if(NOT status EQUAL 1)
    message(FATAL_ERROR "the exit status is ${status}, not 1\n${output}${errors}")
endif()

# expect_line(<regular expression>): one whole line of the output matches.
function(expect_line line)
    if(NOT output MATCHES "\n${line}\n")
        message(SEND_ERROR "no line is: ${line}")
    endif()
endfunction()

expect_line("empty-boolean.xml +failed: Please set a value or a default for the boolean 'Success' in 'AcquireMastership'.")
expect_line("empty-fragment.xml +failed: PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.")
expect_line("good.xml +Event +0 +[0-9]+ +[0-9]+ +unchanged")
expect_line("no-type.xml +failed: PelLu300RouterMessage: Please set Type properly.")
expect_line("steers-the-terminal-[\\]x1B\\[2J.xml +failed: enum is not valid \\(classname=PelLu300RouterMessage,membername=m_type\\)")
expect_line("unclosed-fragment.xml +failed: 5:26: [^\n]+ .in /PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment.")
expect_line("unclosed-type.xml +failed: 5:26: [^\n]+ .in /PelLu300RouterInterfaceXml/PelLu300RouterMessage/Type.")
expect_line("wrong-root.xml +failed: 2:1: The root element is RouterStatus,[^\n]+ PelLu300RouterInterfaceXml. .in /RouterStatus.")
expect_line("zero-bytes.xml +failed: 1:1: [^\n]+")
expect_line("missing.xml +failed: The file cannot be read: No such file or directory.")
expect_line("10 documents: 1 unchanged, 0 changed, 9 failed")
if(output MATCHES "${escape}")
    message(SEND_ERROR "an escape character reached the terminal")
endif()
