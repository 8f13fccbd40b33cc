if(PAGEPROBE_SANITIZE)
    add_compile_options(-fsanitize=${PAGEPROBE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${PAGEPROBE_SANITIZE})
endif()
