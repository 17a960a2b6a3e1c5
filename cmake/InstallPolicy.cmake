# Run at installation: installs the polkit policy in the folder that polkit reads, which doesn't depend on the prefix.
# Parameters: POLICY_TEMPLATE, MIRVEL_PRIVILEGED (the installed program) and POLICY_COPY (the policy's path in the prefix).
# Without permission to write there, the installation continues with a message about the remaining step.
set(folder /usr/share/polkit-1/actions)
set(destination $ENV{DESTDIR}${folder})
# Readable for polkitd, which isn't root, whatever the mode of the template in the checkout.
configure_file(${POLICY_TEMPLATE} $ENV{DESTDIR}${POLICY_COPY} @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ
               WORLD_READ)
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
