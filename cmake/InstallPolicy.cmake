# Puts polkit's policy where polkit reads it, which is the same place whatever the prefix is: run at installation, with
# POLICY_TEMPLATE, MIRVEL_PRIVILEGED (the installed program) and POLICY_COPY (where the policy stays in the prefix).
# Without rights to that place the installation goes on, and says what is left to do.
set(folder /usr/share/polkit-1/actions)
set(destination $ENV{DESTDIR}${folder})
configure_file(${POLICY_TEMPLATE} $ENV{DESTDIR}${POLICY_COPY} @ONLY)
execute_process(COMMAND ${CMAKE_COMMAND} -E make_directory ${destination} ERROR_QUIET RESULT_VARIABLE failure)
if(failure EQUAL 0)
  execute_process(COMMAND ${CMAKE_COMMAND} -E copy $ENV{DESTDIR}${POLICY_COPY} ${destination}/app.mirvel.policy
                  ERROR_QUIET RESULT_VARIABLE failure)
endif()
if(failure EQUAL 0)
  message(STATUS "Installing: ${destination}/app.mirvel.policy")
else()
  message(STATUS "polkit's policy could not be put into ${folder}. Jobs of the machine can be changed all the same, but "
                 "the question for the password doesn't name Mirvel. If only root can write to the program's folder, "
                 "run as root:\n     install -m 644 ${POLICY_COPY} ${folder}/app.mirvel.policy")
endif()
