# SPDX-License-Identifier: MIT
# The two binary forms of the messages between clients and a router, for Kaitai Struct (https://kaitai.io), which makes
# readers in many languages of it. docs/binary-form.md describes the forms, docs/other-tools.md how to use this file.
meta:
  id: router
  title: Messages between clients and a router
  file-extension:
    - bin
    - binz
  ks-version: '0.11'
  license: MIT
  encoding: UTF-8
  endian: be
doc: |
  Messages, one directly behind another: a file, a recording, or what one direction of a connection carries.

  The types tell what stands where, not what it adds up to. Who wants the values of a message does what readers of the
  form do: of several entries for one member the last one counts, a record or a list that comes again is continued, and
  of several payloads in a fragment the last one is selected. Entries with an unknown tag are passed over.

  A length that does not fit what it counts is an error. Some readers of the form take wrong lengths of entries that
  compensate each other; this description does not.
seq:
  - id: frames
    type: frame(record_id::named_by_the_frame, false)
    repeat: eos
types:
  frame:
    doc: |
      A record with its length in front. Applications that do the framing themselves may leave out the id and may use
      the other byte order: make this type with the class and the byte order then, once for each frame.
    params:
      - id: only_class
        type: u4
        enum: record_id
        doc: the class of a frame without an id
      - id: is_little_endian
        type: bool
    meta:
      endian:
        switch-on: is_little_endian
        cases:
          true: le
          false: be
    seq:
      - id: id
        type: u4
        enum: record_id
        if: only_class == record_id::named_by_the_frame
        valid:
          any-of:
            - record_id::document
            - record_id::message
            - record_id::fragment
            - record_id::mastership_state
            - record_id::acquire_mastership
            - record_id::release_mastership
            - record_id::ostra_interface_port
            - record_id::pel_vt_connect_server
            - record_id::router_vt_server_port
            - record_id::df_params
            - record_id::compressed
      - id: length
        type: s4
        valid:
          min: 0
      - id: content
        size: length
        type:
          switch-on: root
          cases:
            record_id::document: document
            record_id::message: message
            record_id::fragment: fragment
            record_id::mastership_state: mastership_state
            record_id::acquire_mastership: outcome
            record_id::release_mastership: outcome
            record_id::ostra_interface_port: port
            record_id::pel_vt_connect_server: connect_server
            record_id::router_vt_server_port: port
            record_id::df_params: df_params
            record_id::compressed: pieces
    instances:
      root:
        value: 'only_class == record_id::named_by_the_frame ? id : only_class'
        enum: record_id
    types:
      document:
        seq:
          - id: entries
            type: document_entry
            repeat: eos
      document_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::message: message
      message:
        seq:
          - id: entries
            type: message_entry
            repeat: eos
      message_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::type: message_type
                tag::message_id: number
                tag::fragment: fragment_list
      fragment_list:
        seq:
          - id: count
            type: s4
            valid:
              min: 0
          - id: items
            type: fragment_frame
            repeat: expr
            repeat-expr: count
          - id: end
            type: end
      fragment_frame:
        seq:
          - id: length
            type: s4
            valid:
              min: 0
          - id: content
            size: length
            type: fragment
      fragment:
        doc: Writers put at most one payload into a fragment.
        seq:
          - id: entries
            type: fragment_entry
            repeat: eos
      fragment_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::mastership_state: mastership_state
                tag::acquire_mastership: outcome
                tag::release_mastership: outcome
                tag::ostra_interface_port: port
                tag::pel_vt_connect_server: connect_server
                tag::router_vt_server_port: port
                tag::df_params: df_params
      mastership_state:
        seq:
          - id: entries
            type: mastership_state_entry
            repeat: eos
      mastership_state_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::state: master_state
                tag::master_client_id: text
      outcome:
        seq:
          - id: entries
            type: outcome_entry
            repeat: eos
      outcome_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::success: truth
      port:
        seq:
          - id: entries
            type: port_entry
            repeat: eos
      port_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::port: number
      connect_server:
        seq:
          - id: entries
            type: connect_server_entry
            repeat: eos
      connect_server_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::address: text
                tag::port: number
      df_params:
        seq:
          - id: entries
            type: df_params_entry
            repeat: eos
      df_params_entry:
        seq:
          - id: tag
            type: u4
            enum: tag
          - id: length
            type: s4
            valid:
              min: 0
          - id: payload
            size: length
            type:
              switch-on: tag
              cases:
                tag::frequency: decimal
                tag::demodulation_frequency: decimal
                tag::bandwidth: decimal
                tag::panorama_span: decimal
      number:
        seq:
          - id: wide_value
            type: u8
          - id: end
            type: end
        instances:
          value:
            value: wide_value % 0x100000000
            doc: Only the low 32 bits count.
      truth:
        seq:
          - id: byte
            type: u1
          - id: end
            type: end
        instances:
          value:
            value: byte != 0
      text:
        seq:
          - id: size
            type: u4
          - id: value
            type: str
            size: size
            if: size != 0xffffffff
            doc: Missing if the text is null, which is not the same as empty.
          - id: end
            type: end
      decimal:
        doc: A number as text, with two decimals and no exponent, or `nan`, `inf` or `-inf`.
        seq:
          - id: text
            type: text
      message_type:
        seq:
          - id: name
            type: text
        instances:
          value:
            value: >-
              name.size == 0xffffffff ? -1 : name.value == 'Request' ? 0 : name.value == 'Reply' ? 1
              : name.value == 'Event' ? 2 : -1
            enum: message_type_name
      master_state:
        seq:
          - id: name
            type: text
        instances:
          value:
            value: >-
              name.size == 0xffffffff ? -1 : name.value == 'NoMasterPresent' ? 0 : name.value == 'MasterPresent' ? 1
              : name.value == 'RouterIsMaster' ? 2 : -1
            enum: master_state_name
  pieces:
    doc: |
      A compressed form. The bytes of its pieces, put together, are a frame with an id that is not compressed. If
      there is only one piece, the frame is in `content`.
    seq:
      - id: pieces
        type: 'piece(_index == 0 ? 65536 : pieces[_index - 1].inflated_size)'
        repeat: until
        repeat-until: _io.eof
    instances:
      content:
        io: pieces[0].inflated._io
        pos: 0
        type: frame(record_id::named_by_the_frame, false)
        if: pieces.size == 1
  piece:
    params:
      - id: size_before
        type: u4
    seq:
      - id: length
        type: s4
        valid:
          min: 4
      - id: inflated_size
        type: u4
        valid:
          expr: _ <= 65536 and size_before == 65536
      - id: inflated
        size: length - 4
        process: zlib
        type: inflated(inflated_size)
  inflated:
    params:
      - id: size
        type: u4
    seq:
      - id: bytes
        size: size
      - id: end
        type: end
  end:
    doc: Nothing. What stands here is more than the lengths allow.
    seq:
      - id: surplus
        size-eos: true
        valid:
          expr: _.size == 0
enums:
  record_id:
    0: named_by_the_frame
    0x4d4b5a31:
      id: compressed
      doc: the characters MKZ1
    0x8553499a:
      id: document
      -orig-id: PelLu300RouterInterfaceXml
    0xeac09d5a:
      id: message
      -orig-id: PelLu300RouterMessage
    0xd2408d54:
      id: fragment
      -orig-id: Fragment
    0xd6ff526c:
      id: mastership_state
      -orig-id: MastershipState
    0x1a837aca:
      id: acquire_mastership
      -orig-id: AcquireMastership
    0x5f3980d4:
      id: release_mastership
      -orig-id: ReleaseMastership
    0x7f012eb8:
      id: ostra_interface_port
      -orig-id: OstraInterfacePort
    0x0864034c:
      id: pel_vt_connect_server
      -orig-id: PelVtConnectServer
    0x24c7a508:
      id: router_vt_server_port
      -orig-id: RouterVtServerPort
    0xf1ee139c:
      id: df_params
      -orig-id: DF_Params
  tag:
    0x9b1a7ad8:
      id: message
      -orig-id: PelLu300RouterMessage
    0xe1d9e008:
      id: type
      -orig-id: Type
    0xef193de9:
      id: message_id
      -orig-id: MessageID
    0x61023a90:
      id: fragment
      -orig-id: Fragment
    0x111939b4:
      id: mastership_state
      -orig-id: MastershipState
    0x21bda6e2:
      id: acquire_mastership
      -orig-id: AcquireMastership
    0xfc38ab7c:
      id: release_mastership
      -orig-id: ReleaseMastership
    0xf9e464d0:
      id: ostra_interface_port
      -orig-id: OstraInterfacePort
    0x0bbab464:
      id: pel_vt_connect_server
      -orig-id: PelVtConnectServer
    0x5d020ea0:
      id: router_vt_server_port
      -orig-id: RouterVtServerPort
    0xbe2dff74:
      id: df_params
      -orig-id: DF_Params
    0x4264f498:
      id: state
      -orig-id: State
    0x0bcd2cf7:
      id: master_client_id
      -orig-id: MasterClientID
    0xbf8a59c6:
      id: success
      -orig-id: Success
    0x1f980517:
      id: port
      -orig-id: Port
    0x2ac271ec:
      id: address
      -orig-id: Address
    0xa97db5be:
      id: frequency
      -orig-id: Frequency
    0x5255927f:
      id: demodulation_frequency
      -orig-id: DemodulationFrequency
    0x104a95ab:
      id: bandwidth
      -orig-id: Bandwidth
    0x7029d96c:
      id: panorama_span
      -orig-id: PanoramaSpan
  message_type_name:
    -1: invalid
    0:
      id: request
      -orig-id: Request
    1:
      id: reply
      -orig-id: Reply
    2:
      id: event
      -orig-id: Event
  master_state_name:
    -1: invalid
    0:
      id: no_master_present
      -orig-id: NoMasterPresent
    1:
      id: master_present
      -orig-id: MasterPresent
    2:
      id: router_is_master
      -orig-id: RouterIsMaster
